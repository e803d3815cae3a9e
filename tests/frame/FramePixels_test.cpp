// What comes out of a frame, against a direct evaluation in space and against laws.

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "frame/FrameSetup.h"

namespace frame {
namespace {

constexpr double kRadius = 6.0;  // the control's 5.5 and half a pixel
constexpr double kFloat = 2e-6;

reference::Scene sceneOf(const BlurEffect& blur, const headless::World& input, int layers) {
    reference::Scene scene;
    scene.input = &input;
    scene.kernels = reference::kernelsOf(*blur.shape, kRadius, layers);
    scene.exposure = 2.0;
    return scene;
}

// A value as a fixed-point control holds it.
double control(double value) {
    return std::round(value * 65536) / 65536;
}

class PixelFormats : public testing::TestWithParam<int> {};

TEST_P(PixelFormats, SeveralTilesEqualTheDirectSum) {
    const int bits = GetParam();
    BlurEffect blur;
    blur.set("Threshold", 0.25);
    const auto input = noisePicture(71, 60, bits);
    const auto result = blur.render(requestFor(input, bits));
    ASSERT_EQ(result.status, 0);
    reference::Scene scene = sceneOf(blur, *input, 1);
    scene.threshold = control(0.25);
    expectPixels(*result.output, reference::render(scene, {0, 0, 71, 60}), kFloat);
    EXPECT_TRUE(blur.host.accounts().clean()) << blur.host.accounts().describe();
}

TEST_P(PixelFormats, WithoutRepeatedEdgesTheFrameGrowsByTheReach) {
    const int bits = GetParam();
    BlurEffect blur;
    blur.set("Edge Behavior", 0);
    const auto input = noisePicture(40, 31, bits);
    auto request = requestFor(input, bits);
    request.rect = PF_LRect{-20, -20, 60, 60};
    const auto result = blur.render(request);
    ASSERT_EQ(result.status, 0);
    EXPECT_EQ(result.resultRect.left, -6);
    EXPECT_EQ(result.resultRect.bottom, 37);
    reference::Scene scene = sceneOf(blur, *input, 1);
    scene.repeatEdge = false;
    expectPixels(*result.output, reference::render(scene, result.resultRect), 2e-5);
}

TEST_P(PixelFormats, ExposureZeroAndNegative) {
    const int bits = GetParam();
    for (const double exposure : {0.0, -3.0}) {
        BlurEffect blur;
        blur.set("Exposure", exposure);
        const auto input = noisePicture(30, 20, bits);
        const auto result = blur.render(requestFor(input, bits));
        reference::Scene scene = sceneOf(blur, *input, 1);
        scene.exposure = exposure;
        expectPixels(*result.output, reference::render(scene, {0, 0, 30, 20}), kFloat);
    }
}

TEST_P(PixelFormats, DepthLayersInBothModes) {
    const int bits = GetParam();
    for (const auto mode : {reference::Mode::Normal, reference::Mode::Split}) {
        BlurEffect blur;
        const auto input = noisePicture(60, 57, bits);
        const auto map = depthPicture(60, 57);
        blur.useDepth(map, 3);
        blur.set("Composite Mode", static_cast<int>(mode));
        blur.set("Focal Distance", 0.4);
        const auto result = blur.render(requestFor(input, bits));
        ASSERT_EQ(result.status, 0);
        reference::Scene scene = sceneOf(blur, *input, 3);
        scene.map = map.get();
        scene.mode = mode;
        scene.focalDistance = control(0.4);
        expectPixels(*result.output, reference::render(scene, {0, 0, 60, 57}), kFloat);
    }
}

INSTANTIATE_TEST_SUITE_P(Bits, PixelFormats, testing::Values(8, 16, 32));

struct DepthCase {
    int layers;
    reference::Mode mode;
    double focalDistance;
    double profile;
    bool invert;
};

class DepthFrames : public testing::TestWithParam<DepthCase> {};

TEST_P(DepthFrames, EqualTheDirectSumWithEdgeLeakRemoved) {
    const DepthCase& c = GetParam();
    BlurEffect blur;
    const auto input = noisePicture(70, 30, 32);
    const auto map = depthPicture(70, 30);
    blur.useDepth(map, c.layers);
    blur.set("Composite Mode", static_cast<int>(c.mode));
    blur.set("Focal Distance", c.focalDistance);
    blur.set("Profile", c.profile);
    blur.set("Invert Depth Map", c.invert ? 1 : 0);
    blur.set("Remove Edge Leak", 0.5);
    blur.set("Detect Edge Threshold", 0.125);
    const auto result = blur.render(requestFor(input, 32));
    ASSERT_EQ(result.status, 0);
    reference::Scene scene = sceneOf(blur, *input, c.layers);
    scene.map = map.get();
    scene.mode = c.mode;
    scene.invert = c.invert;
    scene.focalDistance = control(c.focalDistance);
    scene.profile = control(c.profile);
    scene.edgeLeak = 0.5;
    scene.edgeThreshold = 0.125;
    expectPixels(*result.output, reference::render(scene, {0, 0, 70, 30}), 5e-6);
}

INSTANTIATE_TEST_SUITE_P(Layers, DepthFrames,
                         testing::Values(DepthCase{2, reference::Mode::Normal, 0.0, 0.0, false},
                                         DepthCase{2, reference::Mode::Split, 1.0, -0.5, true},
                                         DepthCase{3, reference::Mode::Normal, 0.3, 0.5, true},
                                         DepthCase{3, reference::Mode::Split, -1.0, 0.0, false},
                                         DepthCase{16, reference::Mode::Normal, 0.5, 0.25, false},
                                         DepthCase{16, reference::Mode::Split, 2.0, 0.0, false}));

TEST(FrameLaws, EqualDepthBlursWithOneMixOfKernels) {
    BlurEffect blur;
    const auto input = noisePicture(40, 40, 32);
    auto map = std::make_shared<headless::World>(40, 40, PF_PixelFormat_ARGB128);
    map->fill({1, 2.0F / 3, 0, 0});
    blur.useDepth(map, 3);
    blur.set("Composite Mode", static_cast<int>(reference::Mode::Split));
    blur.set("Focal Distance", 0.0);
    blur.set("Exposure", 0.0);
    const auto result = blur.render(requestFor(input, 32));
    ASSERT_EQ(result.status, 0);

    // A third of the range from the far end lies on the border of the two most blurred layers.
    const auto kernels = reference::kernelsOf(*blur.shape, kRadius, 3);
    reference::Kernel mix = kernels[0];
    for (std::size_t i = 0; i < mix.weights.size(); ++i) {
        mix.weights[i] = (kernels[0].weights[i] + kernels[1].weights[i]) / 2;
    }
    reference::Scene scene;
    scene.input = input.get();
    scene.kernels = {mix};
    expectPixels(*result.output, reference::render(scene, {0, 0, 40, 40}), kFloat);
}

TEST(FrameLaws, PointOfLightOpensIntoTheUprightAperture) {
    BlurEffect blur;
    blur.effect.parameters().setLayer(blur.effect.parameters().find("Custom Blur Shape"), nullptr);
    blur.set("Blur Radius", 12);
    blur.set("Vertices", 3);
    blur.set("Exposure", 0);
    auto input = std::make_shared<headless::World>(90, 80, PF_PixelFormat_ARGB128);
    input->fill({1, 0, 0, 0});
    input->set(30, 50, {1, 100, 0, 0});
    const auto result = blur.render(requestFor(input, 32));
    ASSERT_EQ(result.status, 0);

    // A triangle with a vertex straight up: its rows widen downwards and end at half the radius.
    const auto widthOfRow = [&](int y) {
        int lit = 0;
        for (int x = 0; x < 90; ++x) lit += result.output->get(x, y).red > 0.05F ? 1 : 0;
        return lit;
    };
    EXPECT_LE(widthOfRow(39), 3);
    EXPECT_NEAR(widthOfRow(50), 14, 2);
    EXPECT_NEAR(widthOfRow(55), 20, 2);
    EXPECT_EQ(widthOfRow(58), 0);
    EXPECT_EQ(widthOfRow(36), 0);
    float sum = 0;
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 90; ++x) sum += result.output->get(x, y).red;
    }
    EXPECT_NEAR(sum, 100, 0.01);
}

TEST(FrameLaws, RegionsAndReducedFramesAgreeWithTheWhole) {
    BlurEffect blur;
    const auto input = noisePicture(90, 70, 32);
    const auto whole = blur.render(requestFor(input, 32));
    auto request = requestFor(input, 32);
    request.rect = PF_LRect{20, 30, 75, 64};
    const auto part = blur.render(request);
    ASSERT_EQ(part.status, 0);
    for (int y = 30; y < 64; y += 3) {
        for (int x = 20; x < 75; x += 3) {
            EXPECT_NEAR(part.output->get(x - 20, y - 30).green, whole.output->get(x, y).green,
                        1e-6);
        }
    }

    // A flat picture stays flat, at any reduction and in any number of threads.
    auto flat = std::make_shared<headless::World>(64, 48, PF_PixelFormat_ARGB64);
    flat->fill({1, 0.5F, 0.25F, 0.75F});
    auto half = requestFor(flat, 16);
    half.downsampleX = half.downsampleY = {1, 2};
    const auto reduced = blur.render(half);
    ASSERT_EQ(reduced.status, 0);
    EXPECT_EQ(reduced.output->width(), 32);
    for (int x = 0; x < 32; ++x) {
        EXPECT_NEAR(reduced.output->get(x, 11).red, 0.5, 1.1 / 32768);
        EXPECT_NEAR(reduced.output->get(x, 11).alpha, 1.0, 1.1 / 32768);
    }
}

TEST(FrameLaws, RadiusZeroCopiesAndLooksAtNothing) {
    BlurEffect blur;
    const auto input = noisePicture(33, 21, 16);
    blur.set("Blur Radius", 0);
    blur.useDepth(depthPicture(10, 10), 16);
    blur.set("Use Focus Point", 1);
    const auto result = blur.render(requestFor(input, 16));
    ASSERT_EQ(result.status, 0);
    EXPECT_TRUE(sameBits(*result.output, *input));
}

// A map of twice the frame's size, of black and white columns: each frame pixel reads their mean.
TEST(FrameLaws, StretchedMapIsAveragedOverEachFramePixel) {
    BlurEffect blur;
    const auto input = noisePicture(40, 30, 32);
    auto grey = std::make_shared<headless::World>(40, 30, PF_PixelFormat_ARGB128);
    grey->fill({1, 0.5F, 0, 0});
    auto columns = std::make_shared<headless::World>(80, 60, PF_PixelFormat_ARGB128);
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 80; ++x) columns->set(x, y, {1, x % 2 == 0 ? 0.0F : 1.0F, 0, 0});
    }
    blur.useDepth(grey, 3);
    blur.set("Focal Distance", 0);
    const auto flat = blur.render(requestFor(input, 32));
    blur.useDepth(columns, 3);
    blur.effect.parameters().setChoice(blur.effect.parameters().find("Placement"), "Stretch Map");
    const auto stretched = blur.render(requestFor(input, 32));
    ASSERT_EQ(stretched.status, 0);
    // At the frame's sides the box reaches beyond the map.
    for (int y = 0; y < 30; ++y) {
        for (int x = 7; x < 33; ++x) {
            EXPECT_NEAR(stretched.output->get(x, y).red, flat.output->get(x, y).red, 1e-5);
        }
    }
}

TEST(FrameLaws, FocusPointsStandForTheDistanceUnderThem) {
    BlurEffect blur;
    const auto input = noisePicture(50, 40, 32);
    auto map = std::make_shared<headless::World>(50, 40, PF_PixelFormat_ARGB128);
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 50; ++x) map->set(x, y, {1, x < 25 ? 0.25F : 0.75F, 0, 0});
    }
    blur.useDepth(map, 3);
    blur.set("Focal Distance", 0.375);
    const auto typed = blur.render(requestFor(input, 32));
    auto& parameters = blur.effect.parameters();
    blur.set("Use Focus Point", 1);
    parameters.setPoint(parameters.find("Focus Point 0"), 10, 20);
    parameters.setPoint(parameters.find("Focus Point 1"), 40, 20);
    blur.set("Focus Point 0-1 Interpolation", 0.25);
    const auto pointed = blur.render(requestFor(input, 32));
    ASSERT_EQ(pointed.status, 0);
    EXPECT_TRUE(sameBits(*typed.output, *pointed.output));
}

TEST(FrameLaws, RepeatedRunsHaveTheSameBitsAndThreadsHardlyMatter) {
    const auto input = noisePicture(80, 60, 32);
    const auto map = depthPicture(80, 60);
    const auto renderWith = [&](int threads) {
        BlurEffect blur(threads);
        blur.useDepth(map, 16);
        return blur.render(requestFor(input, 32)).output;
    };
    const auto one = renderWith(1);
    const auto two = renderWith(2);
    EXPECT_TRUE(sameBits(*one, *renderWith(1)));
    EXPECT_TRUE(sameBits(*two, *renderWith(2)));
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 80; ++x) {
            const float a = one->get(x, y).red;
            EXPECT_NEAR(a, two->get(x, y).red, 1e-6F * std::max(1.0F, std::fabs(a)));
        }
    }
}

TEST(FrameLaws, FramesInFlightTogetherDoNotMix) {
    BlurEffect blur;
    const auto first = noisePicture(70, 50, 32, 3);
    const auto second = noisePicture(40, 90, 8, 4);
    const auto firstAlone = blur.render(requestFor(first, 32));
    const auto secondAlone = blur.render(requestFor(second, 8));
    headless::FrameResult firstResult;
    std::thread other([&] { firstResult = blur.render(requestFor(first, 32)); });
    const auto secondResult = blur.render(requestFor(second, 8));
    other.join();
    ASSERT_EQ(firstResult.status, 0);
    ASSERT_EQ(secondResult.status, 0);
    EXPECT_TRUE(sameBits(*firstResult.output, *firstAlone.output));
    EXPECT_TRUE(sameBits(*secondResult.output, *secondAlone.output));
    EXPECT_TRUE(blur.host.accounts().clean()) << blur.host.accounts().describe();
}

TEST(FrameLaws, OddSizesAndValues) {
    BlurEffect blur;
    for (const auto& [width, height] : {std::pair{1, 1}, std::pair{1, 200}, std::pair{53, 2}}) {
        const auto input = noisePicture(width, height, 32);
        const auto result = blur.render(requestFor(input, 32));
        ASSERT_EQ(result.status, 0);
        const reference::Scene scene = sceneOf(blur, *input, 1);
        expectPixels(*result.output, reference::render(scene, {0, 0, width, height}), kFloat);
    }
    // One value that is no number spoils its block and no other.
    auto input = noisePicture(150, 20, 32);
    input->set(5, 5, {1, std::nanf(""), 0, 0});
    const auto result = blur.render(requestFor(input, 32));
    EXPECT_TRUE(std::isnan(result.output->get(5, 5).red));
    EXPECT_FALSE(std::isnan(result.output->get(140, 5).red));
    EXPECT_FALSE(std::isnan(result.output->get(5, 5).green));
}

TEST(FrameLaws, CustomShapeOfAnotherFormatAndWithoutWeight) {
    BlurEffect blur;
    const auto input = noisePicture(30, 30, 32);
    const auto reference = blur.render(requestFor(input, 32));
    auto& parameters = blur.effect.parameters();
    const int index = parameters.find("Custom Blur Shape");
    auto deep = std::make_shared<headless::World>(12, 12, PF_PixelFormat_ARGB64);
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 12; ++x) deep->set(x, y, blur.shape->get(x, y));
    }
    parameters.setLayer(index, deep);
    const auto result = blur.render(requestFor(input, 32));
    for (int x = 0; x < 30; ++x) {
        EXPECT_NEAR(result.output->get(x, 7).red, reference.output->get(x, 7).red, 1e-3);
    }
    parameters.setLayer(index, std::make_shared<headless::World>(9, 9, PF_PixelFormat_ARGB32));
    blur.set("Exposure", 0);
    const auto unblurred = blur.render(requestFor(input, 32));
    ASSERT_EQ(unblurred.status, 0);
    for (int x = 0; x < 30; ++x) {
        if (input->get(x, 7).alpha == 0) continue;
        EXPECT_NEAR(unblurred.output->get(x, 7).red, input->get(x, 7).red, 1e-6);
    }
}

}  // namespace
}  // namespace frame
