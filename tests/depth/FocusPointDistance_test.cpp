#include "depth/FocusPointDistance.h"

#include <gtest/gtest.h>

#include "pipeline/StageFixture.h"

namespace {

// A frame of 20 x 12 with a depth map that is read under focus points.
struct FocusedFrame : StageFixture {
    FocusedFrame(headless::Host& host, const headless::World& map, std::int32_t placement)
        : StageFixture(host, map.record()) {
        info.frameRect = {0, 0, 20, 12};
        info.placement = placement;
        info.depthChannel = kChannelRed;
    }

    // The distance of a single point.
    double at(double x, double y) {
        info.focusPoint0 = info.focusPoint1 = {x, y};
        info.focusInterpolation = 0.0;
        return forcusPointToDistance(info, info.depthWorld);
    }

    // The distance between two points.
    double between(RenderPoint point0, RenderPoint point1, double t) {
        info.focusPoint0 = point0;
        info.focusPoint1 = point1;
        info.focusInterpolation = t;
        return forcusPointToDistance(info, info.depthWorld);
    }
};

// A map whose red is `x * stepX + y * stepY`.
headless::World& ramp(headless::World& map, double stepX, double stepY) {
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x) {
            map.set(x, y, {1.0f, static_cast<float>(x * stepX + y * stepY), 0.25f, 0.5f});
        }
    }
    return map;
}

TEST(FocusPointDistance, PlacesThePointInTheMap) {
    headless::Host host;
    headless::World large(40, 24, PF_PixelFormat_ARGB128);
    ramp(large, 1.0 / 64, 1.0 / 128);
    FocusedFrame stretched(host, large, kPlacementStretch);
    EXPECT_FLOAT_EQ(static_cast<float>(stretched.at(3.25, 9.0)), 6.5f / 64 + 18.0f / 128);
    FocusedFrame centred(host, large, kPlacementCenter);
    EXPECT_FLOAT_EQ(static_cast<float>(centred.at(3.25, 9.0)), 13.25f / 64 + 15.0f / 128);
    EXPECT_DOUBLE_EQ(centred.at(10.0, 6.0), stretched.at(10.0, 6.0)) << "the map's centre";
    FocusedFrame elsewhere(host, large, 3);
    EXPECT_EQ(elsewhere.at(10.0, 6.0), 0.0) << "the map's corner";
}

TEST(FocusPointDistance, HoldsThePointInTheMap) {
    headless::Host host;
    headless::World small(10, 6, PF_PixelFormat_ARGB128);
    ramp(small, 1.0 / 16, 1.0 / 64);
    FocusedFrame frame(host, small, kPlacementCenter);
    EXPECT_EQ(frame.at(-100.0, -100.0), 0.0);
    EXPECT_FLOAT_EQ(static_cast<float>(frame.at(100.0, -100.0)), 9.0f / 16);
    EXPECT_FLOAT_EQ(static_cast<float>(frame.at(-100.0, 100.0)), 5.0f / 64);
    EXPECT_FLOAT_EQ(static_cast<float>(frame.at(14.5, 100.0)), 9.0f / 16 + 5.0f / 64);
    frame.info.depthChannel = kChannelAlpha;
    EXPECT_EQ(frame.at(100.0, 100.0), 1.0) << "no half of what lies outside";

    headless::World single(1, 1, PF_PixelFormat_ARGB32);
    single.set(0, 0, {1.0f, 0.6f, 0.0f, 0.0f});
    FocusedFrame stretched(host, single, kPlacementStretch);
    EXPECT_NEAR(stretched.at(19.0, 0.0), 0.6, 1e-6);
}

TEST(FocusPointDistance, ReadsTheChannelAndInverts) {
    headless::Host host;
    headless::World map(20, 12, PF_PixelFormat_ARGB128);
    map.fill({0.75f, 0.5f, 0.125f, 0.25f});
    map.set(5, 5, {1.0f, 2.0f, -1.0f, 0.0f});
    FocusedFrame frame(host, map, kPlacementCenter);
    // Red, green, blue, alpha, average, and a channel that does not exist.
    const double expected[] = {0.5, 0.125, 0.25, 0.75, 0.875 / 3.0, 0.0};
    for (int i = 0; i < 6; ++i) {
        frame.info.depthChannel = i + 1;
        frame.info.invertDepth = false;
        EXPECT_DOUBLE_EQ(frame.at(8.0, 8.0), expected[i]) << i;
        frame.info.invertDepth = true;
        EXPECT_DOUBLE_EQ(frame.at(8.0, 8.0), 1.0 - expected[i]) << i;
    }
    frame.info.depthChannel = kChannelRed;
    EXPECT_EQ(frame.at(5.0, 5.0), 0.0) << "2 is above the range";
    frame.info.depthChannel = kChannelGreen;
    EXPECT_EQ(frame.at(5.0, 5.0), 1.0) << "-1 is below it";
}

// Two points of depth 0.2 and 0.5, in either order.
TEST(FocusPointDistance, InterpolatesBetweenThePointsAndBeyond) {
    headless::Host host;
    headless::World map(20, 12, PF_PixelFormat_ARGB128);
    map.set(4, 4, {1.0f, 0.2f, 0.0f, 0.0f});
    map.set(12, 8, {1.0f, 0.5f, 0.0f, 0.0f});
    FocusedFrame frame(host, map, kPlacementCenter);
    const auto rising = [&](double t) { return frame.between({4, 4}, {12, 8}, t); };
    const auto falling = [&](double t) { return frame.between({12, 8}, {4, 4}, t); };
    const auto level = [&](double t) { return frame.between({4, 4}, {4, 4}, t); };

    EXPECT_NEAR(rising(0.0), 0.2, 1e-7);
    EXPECT_NEAR(rising(0.25), 0.275, 1e-7);
    EXPECT_NEAR(rising(1.0), 0.5, 1e-7);
    EXPECT_NEAR(rising(-1.0), -1.0, 1e-7);
    EXPECT_NEAR(rising(2.0), 2.0, 1e-7);
    EXPECT_NEAR(rising(1.5), 0.95, 1e-7);
    EXPECT_NEAR(falling(-1.0), 2.0, 1e-7);
    EXPECT_NEAR(falling(2.0), -1.0, 1e-7);
    EXPECT_NEAR(level(-1.0), -1.0, 1e-7);
    EXPECT_NEAR(level(2.0), 2.0, 1e-7);

    // No kink where the parabolas leave the line.
    constexpr double kStep = 1e-4;
    for (const double end : {0.0, 1.0}) {
        EXPECT_NEAR((rising(end + kStep) - rising(end - kStep)) / (2.0 * kStep), 0.3, 1e-3);
        EXPECT_NEAR((falling(end + kStep) - falling(end - kStep)) / (2.0 * kStep), -0.3, 1e-3);
    }
}

TEST(FocusPointDistance, LeavesAFailedSampleToTheStages) {
    headless::Host host;
    headless::World map(20, 12, PF_PixelFormat_ARGB128);
    FocusedFrame frame(host, map, kPlacementCenter);
    host.failAt(headless::Operation::SubpixelSample, 1, 512);
    frame.at(3.0, 3.0);
    EXPECT_EQ(frame.info.depthWorld._err, 512);
}

}  // namespace
