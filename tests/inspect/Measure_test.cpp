// SPDX-License-Identifier: Apache-2.0
// Blurs of known radii, measured.
#include <gmock/gmock.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#include "inspect/Layers.h"
#include "inspect/Radii.h"
#include "pictures/depth/LensLayers.h"

namespace test {
namespace {

using inspect::Bench;
using inspect::Radii;
using testing::DoubleNear;
using testing::Pointwise;

constexpr double kShare = 0.03;  // of a radius, that measuring may be off
constexpr double kBlurRadius = 20.0;
constexpr double kFullRadius = kBlurRadius + 0.5;  // as the effect draws it

std::shared_ptr<headless::World> whiteWorld(int width, int height) {
    auto world = std::make_shared<headless::World>(width, height, PF_PixelFormat_ARGB128);
    world->fill({1.0F, 1.0F, 1.0F, 1.0F});
    return world;
}

// A round aperture and the focus at the near end.
class Measure : public testing::Test {
protected:
    Measure() : effect_(host_, ORBEL_BUNDLE) {
        effect_.setUp();
        set("Blur Radius", kBlurRadius);
        set("Roundness", 1.0);
        set("Focal Distance", 1.0);
        set("Resolution", 2.0);
    }
    void set(const char* label, double value) { effect_.parameters().set(label, value); }
    void setLayer(const char* label, std::shared_ptr<headless::World> world) {
        effect_.parameters().setLayer(effect_.parameters().find(label), std::move(world));
    }
    Bench bench() { return {effect_, frame, effect_.parameters(), std::nullopt}; }
    double radiusAt(float nearness) {
        const float depths[] = {nearness};
        return inspect::measureSpots(bench(), depths).front().radius;
    }

    headless::FrameRequest frame;

private:
    headless::Host host_;
    headless::Effect effect_;
};

TEST_F(Measure, ApertureIsAsLargeAsTheControlSays) {
    EXPECT_NEAR(inspect::measureAperture(bench()).radius, kFullRadius, kShare * kFullRadius);
    // The exposure curve would weigh a point's light, not spread it otherwise.
    set("Exposure", 10.0);
    EXPECT_NEAR(inspect::measureAperture(bench()).radius, kFullRadius, kShare * kFullRadius);
    // Pixels twice as wide as high: in heights the disc is the same.
    frame.pixelAspect = {2, 1};
    EXPECT_NEAR(inspect::measureAperture(bench()).radius, kFullRadius, kShare * kFullRadius);
    frame.pixelAspect = {1, 1};
    // A square with the side 2R has the second moment 2R^2/3, and light in its corners.
    setLayer("Custom Blur Shape", whiteWorld(16, 16));
    const double square = kFullRadius * std::sqrt(4.0 / 3.0);
    EXPECT_NEAR(inspect::measureAperture(bench()).radius, square, kShare * square);
    EXPECT_NEAR(radiusAt(0.0F), square, kShare * square);
}

TEST_F(Measure, RadiiAreThoseOfTheLayersWhereOneBlursAlone) {
    set("Resolution", 16.0);
    set("Blur Radius", 9.0);
    for (const bool inverted : {false, true}) {
        set("Invert Depth Map", inverted ? 1.0 : 0.0);
        const Radii radii(bench());
        for (int i = 0; i < 16; ++i) {
            const double disc = (15 - i) / 15.0 * 9.5;
            const double expected = std::sqrt(2.0 * pictures::discMoment(disc));
            EXPECT_NEAR(radii.at((i + 0.5) / 16.0), expected, kShare * expected + 0.05) << i;
        }
        EXPECT_NEAR(radii.largest(), 9.5, kShare * 9.5);
        EXPECT_NEAR(radii.sharpest(), 1.0, 0.5 / 16.0);
    }
}

TEST_F(Measure, RadiiBetweenMeasuredDepthsAreAsIfMeasuredThere) {
    set("Resolution", 16.0);
    set("Focal Distance", 0.37);
    set("Profile", 0.5);
    set("Blur Radius", 9.0);
    const Radii radii(bench());
    std::vector<float> depths;
    for (int i = 0; i < 60; ++i) depths.push_back(static_cast<float>(i) / 59.3F);
    for (const inspect::Spot& spot : inspect::measureSpots(bench(), depths)) {
        EXPECT_NEAR(radii.at(spot.nearness), spot.radius, 0.01 * spot.radius + 0.05)
            << spot.nearness;
    }
    EXPECT_NEAR(radii.sharpest(), 0.37, 0.02);
}

TEST_F(Measure, FocusPointsCount) {
    set("Use Focus Point", 1.0);
    set("Focus Point 0-1 Interpolation", 1.0);
    for (const bool inverted : {false, true}) {
        set("Invert Depth Map", inverted ? 1.0 : 0.0);
        Bench bench = this->bench();
        bench.focusPoints = {0.2F, 0.7F};
        EXPECT_NEAR(Radii(bench).sharpest(), 0.7, 0.02);
    }
}

TEST_F(Measure, LayersAreFoundWhereTheyAre) {
    for (const int count : {2, 16}) {
        set("Resolution", count);
        for (const double profile : {0.0, 0.4}) {
            set("Profile", profile);
            const double exponent = std::tan((profile * 0.9999 + 1.0) * M_PI / 4.0);
            std::vector<double> expected;
            for (int i = 0; i < count; ++i) {
                expected.push_back(std::pow((i + 0.5) / count, 1.0 / exponent));
            }
            EXPECT_THAT(inspect::measureLayers(bench()), Pointwise(DoubleNear(0.003), expected))
                << count << " layers, profile " << profile;
        }
    }
}

TEST_F(Measure, EdgesAreThoseOfStepsAboveTheThreshold) {
    constexpr int kWidth = 48;
    auto map = whiteWorld(kWidth, 32);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const float value = x < 16 ? 0.2F : (x < 32 ? 0.25F : 0.9F);
            map->row<PF_PixelFloat>(y)[x] = {1.0F, value, value, value};
        }
    }
    setLayer("Layer", map);
    frame.input = whiteWorld(kWidth, 32);
    EXPECT_THAT(inspect::measureEdges(bench()), testing::IsEmpty());
    set("Remove Edge Leak", 1.0);
    set("Edge Behavior", 0.0);
    const std::vector<float> edges = inspect::measureEdges(bench());
    ASSERT_EQ(edges.size(), std::size_t{kWidth} * 32);
    for (int x = 0; x < kWidth; ++x) {
        const float edge = edges[static_cast<std::size_t>(16 * kWidth + x)];
        if (x == 31 || x == 32) {
            EXPECT_GT(edge, 0.1F) << x;
        } else if (x < 29 || x > 34) {
            EXPECT_NEAR(edge, 0.0F, 1e-3F) << x;
        }
    }
    EXPECT_NEAR(edges[20], 0.0F, 1e-3F);  // the frame's own border is no edge
}

}  // namespace
}  // namespace test
