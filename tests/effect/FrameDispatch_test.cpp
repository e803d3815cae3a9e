// SPDX-License-Identifier: Apache-2.0
#include "effect/FrameDispatch.h"

#include "support/EffectFixture.h"

namespace {

using FrameDispatch = EffectFixture;

// The second large buffer fails, so no frame is rendered, and the size of the first one, the kernel
// bank, shows how many layers the pipeline's instance has.
TEST_F(FrameDispatch, WithoutAMapOrOutsideTwoToSixteenThereIsOneLayer) {
    struct Case {
        int resolution;
        bool depth;
        std::uint64_t layers;
    };
    constexpr std::uint64_t kLaneBytes = 64 * 64 * 2 * sizeof(double);
    headless::World map(2, 1, PF_PixelFormat_ARGB128);
    headless::World picture(8, 8, PF_PixelFormat_ARGB128);
    for (const Case& c :
         {Case{3, true, 3}, {16, true, 16}, {17, true, 1}, {0, true, 1}, {16, false, 1}}) {
        SCOPED_TRACE(c.resolution);
        AEO::InData context(&in_data);
        RenderInfo info(context, c.depth ? map.record() : PF_LayerDef{});
        info.inData = &in_data;
        info.radius = 2.5;
        info.input = info.output = picture.layer();
        info.useFocusPoint = 0.0;
        info.layerCount = c.resolution;
        host.failures().clear();
        host.failAt(headless::Operation::kNewHandle, 2);
        host.startCallLog();
        EXPECT_EQ(renderFrame(&in_data, &out_data, context, info, PF_PixelFormat_ARGB128), 4);
        EXPECT_EQ((host.memory().afterEachRequest.at(0) - 8) / kLaneBytes, c.layers);
        host.takeCallLog();
    }
}

}  // namespace
