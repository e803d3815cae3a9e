#include "effect/FrameDispatch.h"

#include "effect/EffectFixture.h"

namespace {

// Dispatches frames whose second large buffer can't be had, so that no frame is rendered: the
// first, the kernel bank, tells how many layers the pipeline's instance has.
class FrameDispatch : public EffectFixture {
protected:
    static constexpr std::uint64_t kLaneBytes = 64 * 64 * 2 * sizeof(double);

    headless::World map{2, 1, PF_PixelFormat_ARGB128};
    headless::World picture{8, 8, PF_PixelFormat_ARGB128};
};

struct Case {
    std::int32_t resolution;
    bool depth, usePoints;
    std::uint64_t layers;
    double focalDistance;
};

TEST_F(FrameDispatch, PicksTheInstanceAndTheFocalDistance) {
    map.set(0, 0, {1.0f, 0.2f, 0.0f, 0.0f});
    map.set(1, 0, {1.0f, 0.5f, 0.0f, 0.0f});
    const Case cases[] = {{3, true, true, 3, 0.275},  {16, true, true, 16, 0.275},
                          {17, true, true, 1, 0.275}, {1, true, true, 1, 0.9},
                          {0, true, true, 1, 0.9},    {6, false, true, 1, 0.9},
                          {2, true, false, 2, 0.9}};
    for (const Case& c : cases) {
        AEO::InData hostData(&in_data);
        RenderInfo info(hostData, c.depth ? map.record() : PF_LayerDef{});
        info.inData = &in_data;
        info.radius = 2.5;
        info.input = info.output = picture.layer();
        info.frameRect = {0, 0, 2, 1};
        info.placement = kPlacementCenter;
        info.depthChannel = kChannelRed;
        info.invertDepth = false;
        info.layerCount = c.resolution;
        info.useFocusPoint = c.usePoints ? 1.0 : 0.0;
        info.focusPoint0 = {0.0, 0.0};
        info.focusPoint1 = {1.0, 0.0};
        info.focusInterpolation = 0.25;
        info.focalDistance = 0.9;
        host.failures().clear();
        host.failAt(headless::Operation::NewHandle, 2);
        host.startCallLog();
        EXPECT_EQ(renderFrame(&in_data, &out_data, hostData, info, PF_PixelFormat_ARGB128), 4);
        EXPECT_EQ((host.memory().afterEachRequest.at(0) - 8) / kLaneBytes, c.layers);
        EXPECT_NEAR(info.focalDistance, c.focalDistance, 1e-6) << c.resolution;
        host.takeCallLog();
    }
}

}  // namespace
