// SPDX-License-Identifier: Apache-2.0
// Rendered frames against a direct evaluation in space, and against laws.

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "support/FrameSetup.h"
#include "support/TestPictures.h"
#include "trial/Pictures.h"

namespace frame {
namespace {

using headless::World;
using reference::Mode;

constexpr double kRadius = 6.0;  // the control's 5.5 and half a pixel

reference::Scene sceneOf(const BlurEffect& blur, const World& input, int layers) {
    reference::Scene scene;
    scene.input = &input;
    scene.kernels = reference::kernelsOf(*blur.shape, kRadius, layers);
    scene.exposure = 2.0;
    return scene;
}

class PixelFormats : public testing::TestWithParam<int> {};

TEST_P(PixelFormats, SeveralTilesEqualTheDirectSum) {
    const int bits = GetParam();
    const struct {
        double exposure, threshold;
        bool repeatEdge;
        double tolerance;
    } cases[] = {{2.0, 0.25, true, 2e-6},
                 {10.0, 0.5, true, 2e-5},
                 {2.0, 0.0, false, 2e-5},
                 {0.0, 0.0, true, 2e-6},
                 {-3.0, 0.0, true, 2e-6}};
    for (const auto& c : cases) {
        BlurEffect blur;
        blur.set("Exposure", c.exposure);
        blur.set("Threshold", c.threshold);
        blur.set("Edge Behavior", c.repeatEdge ? 1 : 0);
        const auto input = noisePicture(71, 45, bits);
        auto request = requestFor(input, bits);
        request.rect = PF_LRect{-20, -20, 90, 60};
        const auto result = blur.render(request);
        EXPECT_EQ(result.resultRect.left, c.repeatEdge ? 0 : -6) << "grows by the reach";
        EXPECT_EQ(result.resultRect.bottom, c.repeatEdge ? 45 : 51);
        reference::Scene scene = sceneOf(blur, *input, 1);
        scene.exposure = c.exposure;
        scene.threshold = asFixed(c.threshold);
        scene.repeatEdge = c.repeatEdge;
        expectPixels(result, scene, c.tolerance);
        EXPECT_TRUE(blur.host.accounts().clean()) << blur.host.accounts().describe();
    }
}

INSTANTIATE_TEST_SUITE_P(Bits, PixelFormats, testing::Values(8, 16, 32));

// Nearest and farthest places only, so that layers in the middle have no pixel; and farther right
// only one of the two.
std::shared_ptr<World> mapWithGaps() {
    auto map = std::make_shared<World>(70, 30, PF_PixelFormat_ARGB128);
    for (int i = 0; i < 70 * 30; ++i) {
        const float step = static_cast<float>(i % 7) / 100.0F;
        const bool far = i % 70 > 50 || i % 11 < 5;
        map->set(i % 70, i / 70, {1, far ? step : 1.0F - step, 0, 0});
    }
    return map;
}

// With edge leak removed, except in the integer formats.
TEST(FramePixels, DepthLayersEqualTheDirectSumInBothModes) {
    const struct {
        int layers;
        Mode mode;
        double focalDistance, profile;
        bool invert;
        int bits;
    } cases[] = {{2, Mode::kNormal, 0.0, 0.0, false, 32},  {2, Mode::kSplit, 1.0, -0.5, true, 32},
                 {3, Mode::kNormal, 0.3, 0.5, true, 32},   {3, Mode::kSplit, -1.0, 0.0, false, 32},
                 {16, Mode::kNormal, 0.5, 0.2, false, 32}, {16, Mode::kSplit, 2.0, 0.0, false, 32},
                 {5, Mode::kNormal, 0.0, 0.0, false, 32},  {5, Mode::kSplit, 0.0, 0.0, true, 32},
                 {16, Mode::kNormal, 0.1, 0.0, true, 32},  {16, Mode::kSplit, 1.0, 0.0, false, 32},
                 {3, Mode::kNormal, 0.4, 0.0, false, 8},   {3, Mode::kSplit, 0.4, 0.0, false, 16}};
    const auto even = trial::depthPicture(70, 30, 32);
    const auto gaps = mapWithGaps();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.layers << " layers, mode " << static_cast<int>(c.mode)
                                        << ", bits " << c.bits);
        BlurEffect blur;
        const auto input = noisePicture(70, 30, c.bits);
        const double leak = c.bits == 32 ? 0.5 : 0.0;
        const bool several = c.layers > 3 && c.profile == 0.0;  // groups of layers
        const std::shared_ptr<const World> map = several ? gaps : even;
        blur.useDepth(map, c.layers);
        blur.set("Composite Mode", static_cast<int>(c.mode));
        blur.set("Focal Distance", c.focalDistance);
        blur.set("Profile", c.profile);
        blur.set("Invert Depth Map", c.invert ? 1 : 0);
        blur.set("Remove Edge Leak", leak);
        blur.set("Detect Edge Threshold", 0.125);
        reference::Scene scene = sceneOf(blur, *input, c.layers);
        scene.map = map.get();
        scene.mode = c.mode;
        scene.invert = c.invert;
        scene.focalDistance = asFixed(c.focalDistance);
        scene.profile = asFixed(c.profile);
        scene.edgeLeak = leak;
        scene.edgeThreshold = 0.125;
        expectPixels(blur.render(requestFor(input, c.bits)), scene, 5e-6);
    }
}

TEST(FrameLaws, EqualDepthBlursWithOneMixOfKernels) {
    BlurEffect blur;
    const auto input = noisePicture(40, 40, 32);
    auto map = std::make_shared<World>(40, 40, PF_PixelFormat_ARGB128);
    map->fill({1, 2.0F / 3, 0, 0});
    blur.useDepth(map, 3);
    blur.set("Composite Mode", static_cast<int>(Mode::kSplit));
    blur.set("Focal Distance", 0.0);
    blur.set("Exposure", 0.0);

    // A third of the range from the far end lies on the border of the two most blurred layers.
    const auto kernels = reference::kernelsOf(*blur.shape, kRadius, 3);
    reference::Kernel mix = kernels[0];
    for (std::size_t i = 0; i < mix.weights.size(); ++i) {
        mix.weights[i] = (kernels[0].weights[i] + kernels[1].weights[i]) / 2;
    }
    reference::Scene scene;
    scene.input = input.get();
    scene.kernels = {mix};
    expectPixels(blur.render(requestFor(input, 32)), scene);
}

TEST(FrameLaws, PointOfLightOpensIntoTheUprightAperture) {
    BlurEffect blur;
    blur.setLayer("Custom Blur Shape", nullptr);
    blur.set("Blur Radius", 12);
    blur.set("Vertices", 3);
    blur.set("Exposure", 0);
    auto input = std::make_shared<World>(90, 80, PF_PixelFormat_ARGB128);
    input->fill({1, 0, 0, 0});
    input->set(30, 50, {1, 100, 0, 0});
    const auto result = blur.render(requestFor(input, 32));
    ASSERT_EQ(result.status, 0);

    // A triangle with a vertex straight up: its rows widen downwards and end at half the radius.
    std::vector<int> widths(80);
    float sum = 0;
    for (int i = 0; i < 80 * 90; ++i) {
        const float light = result.output->get(i % 90, i / 90).red;
        widths[static_cast<std::size_t>(i / 90)] += light > 0.05F ? 1 : 0;
        sum += light;
    }
    EXPECT_EQ(widths[36], 0);
    EXPECT_LE(widths[39], 3);
    EXPECT_NEAR(widths[50], 14, 2);
    EXPECT_NEAR(widths[55], 20, 2);
    EXPECT_EQ(widths[58], 0);
    EXPECT_NEAR(sum, 100, 0.01);
}

TEST(FrameLaws, RegionsAndReducedFramesEqualTheDirectSum) {
    BlurEffect blur;
    const auto input = noisePicture(90, 70, 32);
    auto request = requestFor(input, 32);
    request.rect = PF_LRect{20, 30, 75, 64};
    expectPixels(blur.render(request), sceneOf(blur, *input, 1));

    // Half of everything: picture, shape and radius.
    request.rect.reset();
    request.downsampleX = request.downsampleY = {1, 2};
    const auto reduced = [&](const World& world) {
        const PF_LRect half{0, 0, world.width() / 2, world.height() / 2};
        return headless::reduce(world, {1, 2}, {1, 2}, half, PF_PixelFormat_ARGB128);
    };
    const auto smallInput = reduced(*input);
    reference::Scene scene = sceneOf(blur, *smallInput, 1);
    scene.kernels = reference::kernelsOf(*reduced(*blur.shape), kRadius / 2, 1);
    const auto result = blur.render(request);
    EXPECT_EQ(result.resultRect.right, 45);
    expectPixels(result, scene);
}

// A map of twice the frame's size: each frame pixel reads the mean of four.
TEST(FrameLaws, StretchedMapIsAveragedOverEachFramePixel) {
    BlurEffect blur;
    const auto input = noisePicture(40, 30, 32);
    auto grey = std::make_shared<World>(40, 30, PF_PixelFormat_ARGB128);
    grey->fill({1, 0.5F, 0, 0});
    auto fours = std::make_shared<World>(80, 60, PF_PixelFormat_ARGB128);
    for (int i = 0; i < 80 * 60; ++i) {
        const float value = static_cast<float>(i % 2 + 2 * (i / 80 % 2)) / 3.0F;
        fours->set(i % 80, i / 80, {1, value, 0, 0});
    }
    blur.useDepth(grey, 3);
    blur.set("Focal Distance", 0);
    const auto flat = blur.render(requestFor(input, 32));
    blur.useDepth(fours, 3);
    blur.effect.parameters().setChoice(blur.effect.parameters().find("Placement"), "Stretch Map");
    const auto stretched = blur.render(requestFor(input, 32));
    ASSERT_EQ(stretched.status, 0);
    // At the sides of the frame the box extends beyond the map.
    for (int y = 7; y < 23; ++y) {
        for (int x = 7; x < 33; ++x) {
            EXPECT_NEAR(stretched.output->get(x, y).red, flat.output->get(x, y).red, 1e-5);
        }
    }
}

TEST(FrameLaws, FocusPointsSetTheDistanceUnderThem) {
    BlurEffect blur;
    const auto input = noisePicture(50, 40, 32);
    auto map = std::make_shared<World>(50, 40, PF_PixelFormat_ARGB128);
    map->fill({1, 0.75F, 0, 0});
    map->set(10, 20, {1, 0.25F, 0, 0});
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

TEST(FrameLaws, AnyNumberOfWorkersGivesTheSameBits) {
    const auto input = noisePicture(80, 60, 32);
    const auto map = trial::depthPicture(80, 60, 32);
    const auto renderWith = [&](int workers, int layers) {
        BlurEffect blur(workers);
        if (layers > 1) blur.useDepth(map, layers);
        return blur.render(requestFor(input, 32)).output;
    };
    for (const int layers : {1, 16}) {
        const auto alone = renderWith(1, layers);
        for (const int workers : {1, 2, 3, 8}) {
            EXPECT_TRUE(sameBits(*alone, *renderWith(workers, layers))) << workers;
        }
    }
}

TEST(FrameLaws, FramesInFlightTogetherDoNotMix) {
    BlurEffect blur;
    const auto first = requestFor(noisePicture(70, 50, 32, 3), 32);
    const auto second = requestFor(noisePicture(40, 90, 8, 4), 8);
    const auto firstAlone = blur.render(first);
    const auto secondAlone = blur.render(second);
    headless::FrameResult firstResult;
    std::thread other([&] { firstResult = blur.render(first); });
    const auto secondResult = blur.render(second);
    other.join();
    ASSERT_EQ(firstResult.status | secondResult.status, 0);
    EXPECT_TRUE(sameBits(*firstResult.output, *firstAlone.output));
    EXPECT_TRUE(sameBits(*secondResult.output, *secondAlone.output));
    EXPECT_TRUE(blur.host.accounts().clean()) << blur.host.accounts().describe();
}

TEST(FrameLaws, OddSizesAndValues) {
    BlurEffect blur;
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 200}, {53, 2}}) {
        const auto input = noisePicture(width, height, 32);
        expectPixels(blur.render(requestFor(input, 32)), sceneOf(blur, *input, 1));
    }
    // A NaN spoils its own block and no other.
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
    for (const PF_PixelFormat format : {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64}) {
        auto other = std::make_shared<World>(12, 12, format);
        for (int i = 0; i < 144; ++i) other->set(i % 12, i / 12, blur.shape->get(i % 12, i / 12));
        blur.setLayer("Custom Blur Shape", other);
        const auto result = blur.render(requestFor(input, 32));
        expectPixels(result, sceneOf(blur, *input, 1),
                     format == PF_PixelFormat_ARGB32 ? 0.01 : 1e-3);
    }
    blur.setLayer("Custom Blur Shape", std::make_shared<World>(9, 9, PF_PixelFormat_ARGB32));
    reference::Scene sharp = sceneOf(blur, *input, 1);
    sharp.kernels = {{0, {1.0}}};
    expectPixels(blur.render(requestFor(input, 32)), sharp);
}

}  // namespace
}  // namespace frame
