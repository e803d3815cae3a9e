// SPDX-License-Identifier: Apache-2.0
#include "depth/ExtractDepth.h"

#include <algorithm>
#include <array>

#include "host/Iterator.h"
#include "support/StageFixture.h"
#include "support/TestPictures.h"

namespace {

constexpr int kFrameWidth = 20;
constexpr int kFrameHeight = 12;
// A block that extends beyond the frame on all sides.
constexpr iRect kBlock{-9, -6, kFrameWidth + 8, kFrameHeight + 7};

// Channel 6 doesn't exist and reads alpha.
float channelOf(const PF_PixelFloat& p, int channel) {
    if (channel == 5) return (p.red + p.green + p.blue) / 3.0f;
    return std::array{p.red, p.green, p.blue, p.alpha}[std::min(channel - 1, 3)];
}

// One depth map over a frame of 20 x 12.
class MapOverFrame {
public:
    MapOverFrame(headless::Host& host, headless::World& picture, std::int32_t placement,
                 std::int32_t channel)
        : map(picture), frame(host, picture.record()), depth(frame.context) {
        frame.info.frameRect = {0, 0, kFrameWidth, kFrameHeight};
        frame.info.placement = placement;
        frame.info.depthChannel = channel;
        frame.info.output = &output;
        frame.info.input = &input;
        if (placement == kPlacementStretch) {
            halfX = 0.5 * map.width() / kFrameWidth;
            halfY = 0.5 * map.height() / kFrameHeight;
        }
        depth.resize(static_cast<std::size_t>(kBlock.width()) *
                     static_cast<std::size_t>(kBlock.height()));
    }

    int extract() {
        ExtractDepth stage(frame.info, frame.info.depthWorld, kBlock, depth, halfX, halfY);
        return AEO::Iterator::IterationT(frame.context, stage, kBlock.width() * kBlock.height());
    }

    // The extracted value at a pixel of the output world.
    float at(int x, int y) const {
        return depth[static_cast<std::size_t>((y - kBlock.top) * kBlock.width() + x - kBlock.left)];
    }

    // The map's mean over the footprint of pixel (x, y) of the frame.
    float expected(int x, int y) const {
        Box box{x - (kFrameWidth - map.width()) / 2.0, y - (kFrameHeight - map.height()) / 2.0,
                asRadius(halfX), asRadius(halfY)};
        if (frame.info.placement == kPlacementStretch) {
            box.x = x * (1.0 * map.width() / kFrameWidth);
            box.y = y * (1.0 * map.height() / kFrameHeight);
        }
        box.x = asFixed(std::clamp(box.x, 0.0, map.width() - halfX));
        box.y = asFixed(std::clamp(box.y, 0.0, map.height() - halfY));
        return channelOf(boxMean(map, box), frame.info.depthChannel);
    }

    void expectValues(float tolerance) const {
        for (int y = kBlock.top; y < kBlock.bottom; ++y) {
            for (int x = kBlock.left; x < kBlock.right; ++x) {
                ASSERT_NEAR(at(x, y), expected(x + output.origin_x, y + output.origin_y), tolerance)
                    << x << ", " << y << " of a map " << map.width() << " wide, channel "
                    << frame.info.depthChannel;
            }
        }
    }

    headless::World& map;
    StageFixture frame;
    PF_LayerDef output{};
    PF_LayerDef input{};
    AEO::Vector<float> depth;
    double halfX = 0.5;
    double halfY = 0.5;
};

// Relative to the frame, whatever the worlds' origins; the block extends beyond the map, whose
// border is repeated.
TEST(ExtractDepth, PlacesMapsOfAllSizes) {
    headless::Host host;
    for (const auto& [width, height] : {std::pair{20, 12}, {10, 6}, {13, 17}, {40, 24}, {1, 1}}) {
        headless::World picture(width, height, PF_PixelFormat_ARGB128);
        fillUnevenly(picture);
        for (const std::int32_t placement : {kPlacementCenter, kPlacementStretch, 3}) {
            for (const std::int32_t originX : {0, 5}) {
                // Alpha shows how far the box extends beyond the map.
                MapOverFrame map(host, picture, placement, originX ? kChannelGreen : kChannelAlpha);
                map.output.origin_x = originX;
                map.output.origin_y = -3;
                map.input.origin_x = -40;
                ASSERT_EQ(map.extract(), 0);
                map.expectValues(1e-5f);
            }
        }
    }
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST(ExtractDepth, ReadsEachChannelOfEachPixelDepth) {
    headless::Host host;
    for (const PF_PixelFormat format :
         {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
        headless::World picture(15, 12, format, {.rowPadding = 32});
        fillUnevenly(picture);
        for (const std::int32_t channel : {1, 2, 3, 4, 5, 6}) {
            MapOverFrame map(host, picture, kPlacementCenter, channel);
            ASSERT_EQ(map.extract(), 0);
            map.expectValues(format == PF_PixelFormat_ARGB32 ? 0.501f / 255.0f : 2e-5f);
        }
    }
}

// On one thread: worker threads store the map's error without a lock, and any of several may be
// kept.
TEST(ExtractDepth, ReturnsTheFirstErrorOfTheMap) {
    headless::Host host({.threads = 1});
    headless::World picture(8, 8, PF_PixelFormat_ARGB32);
    MapOverFrame map(host, picture, kPlacementCenter, kChannelRed);
    host.failAt(headless::Operation::kAreaSample, 100, 512);
    EXPECT_EQ(map.extract(), 512);
    EXPECT_EQ(map.extract(), 512) << "the map keeps its error";
}

}  // namespace
