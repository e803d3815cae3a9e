// SPDX-License-Identifier: Apache-2.0
#include "depth/FocusPointDistance.h"

#include <gtest/gtest.h>

#include "support/StageFixture.h"

namespace {

// A frame of 20 x 12 with a depth map that is read under focus points.
struct FocusedFrame : StageFixture {
    FocusedFrame(headless::Host& host, const headless::World& map, std::int32_t placement)
        : StageFixture(host, map.record()) {
        info.frameRect = {0, 0, 20, 12};
        info.placement = placement;
        info.depthChannel = kChannelRed;
    }

    // The distance between two points.
    double between(AEO::PointValue point0, AEO::PointValue point1, double t) {
        info.focusPoint0 = point0;
        info.focusPoint1 = point1;
        info.focusInterpolation = t;
        return forcusPointToDistance(info, info.depthWorld);
    }
    double at(double x, double y) { return between({x, y}, {x, y}, 0.0); }
};

// A map whose red is `x / 16 + y / 64`.
headless::World& ramp(headless::World& map) {
    for (int y = 0; y < map.height(); ++y) {
        for (int x = 0; x < map.width(); ++x) {
            map.set(x, y, {1.0f, static_cast<float>(4 * x + y) / 64, 0.25f, 0.5f});
        }
    }
    return map;
}

// For each placement, points of the frame and their positions in the map, clamped to it.
TEST(FocusPointDistance, PlacesThePointInTheMap) {
    headless::Host host;
    headless::World large(10, 24, PF_PixelFormat_ARGB128);
    headless::World small(10, 6, PF_PixelFormat_ARGB128);
    const struct {
        headless::World& map;
        std::int32_t placement;
        double x, y, mapX, mapY;
    } cases[] = {{large, kPlacementStretch, 3.5, 9.0, 1.75, 18.0},
                 {large, kPlacementCenter, 6.25, 9.0, 1.25, 15.0},
                 {large, 3, 10.0, 6.0, 0.0, 0.0},
                 {small, kPlacementCenter, -100.0, -100.0, 0.0, 0.0},
                 {small, kPlacementCenter, 100.0, 5.0, 9.0, 2.0},
                 {small, kPlacementCenter, 6.0, 100.0, 1.0, 5.0},
                 {small, kPlacementStretch, 19.9, 11.9, 9.0, 5.0}};
    for (const auto& c : cases) {
        FocusedFrame frame(host, ramp(c.map), c.placement);
        const double inverse = std::max(0.0, 1.0 - (c.mapX / 16 + c.mapY / 64));
        frame.info.invertDepth = true;
        EXPECT_NEAR(frame.at(c.x, c.y), inverse, 1e-6) << c.placement << " at " << c.x;
        frame.info.depthChannel = kChannelAlpha;
        EXPECT_EQ(frame.at(c.x, c.y), 0.0) << "the sample extends beyond the map";
    }
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
    const struct {
        double t, rising, falling, level;
    } cases[] = {{-1.0, -1.0, 2.0, -1.0}, {0.0, 0.2, 0.5, 0.2},      {0.25, 0.275, 0.425, 0.2},
                 {1.0, 0.5, 0.2, 0.2},    {1.5, 0.95, -0.175, 0.65}, {2.0, 2.0, -1.0, 2.0}};
    for (const auto& c : cases) {
        EXPECT_NEAR(rising(c.t), c.rising, 1e-7) << c.t;
        EXPECT_NEAR(falling(c.t), c.falling, 1e-7) << c.t;
        EXPECT_NEAR(level(c.t), c.level, 1e-7) << c.t;
    }
}

TEST(FocusPointDistance, LeavesAFailedSampleToTheStages) {
    headless::Host host;
    headless::World map(20, 12, PF_PixelFormat_ARGB128);
    FocusedFrame frame(host, map, kPlacementCenter);
    host.failAt(headless::Operation::kSubpixelSample, 1, 512);
    frame.at(3.0, 3.0);
    EXPECT_EQ(frame.info.depthWorld._err, 512);
}

}  // namespace
