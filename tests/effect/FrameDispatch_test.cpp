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
    double d0, d1, t;  // depths under the focus points, and the interpolation
    double focalDistance;
    int resolution = 2;
    std::uint64_t layers = 2;
    bool depth = true;
    double usePoints = 1.0;
};

TEST_F(FrameDispatch, PicksTheInstanceAndTheFocalDistance) {
    const Case cases[] = {{0.2, 0.5, 0.0, 0.2, 3, 3},
                          {0.2, 0.5, 0.0, 0.2, 16, 16},
                          {0.2, 0.5, 0.0, 0.2, 17, 1},
                          {0.2, 0.5, 0.0, 0.9, 1, 1},
                          {0.2, 0.5, 0.0, 0.9, 0, 1},
                          {0.2, 0.5, 0.0, 0.9, 6, 1, false},
                          {0.2, 0.5, 0.0, 0.9, 2, 2, true, 0.0},
                          {0.2, 0.5, 1.0, 0.5},
                          {0.2, 0.5, 0.25, 0.275},
                          {0.2, 0.5, 1.5, 0.95},
                          {0.2, 0.5, -0.5, -0.175},
                          {0.2, 0.5, -1.0, -1.0},
                          {0.2, 0.5, 2.0, 2.0},
                          {0.5, 0.2, -1.0, 2.0},
                          {0.5, 0.2, 2.0, -1.0},
                          {0.4, 0.4, -1.0, -1.0},
                          {0.4, 0.4, 2.0, 2.0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.t) + " in " + std::to_string(c.resolution));
        map.set(0, 0, {1.0f, static_cast<float>(c.d0), 0.0f, 0.0f});
        map.set(1, 0, {1.0f, static_cast<float>(c.d1), 0.0f, 0.0f});
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
        info.useFocusPoint = c.usePoints;
        info.focusPoint0 = {0.0, 0.0};
        info.focusPoint1 = {1.0, 0.0};
        info.focusInterpolation = c.t;
        info.focalDistance = 0.9;
        host.failures().clear();
        host.failAt(headless::Operation::NewHandle, 2);
        host.startCallLog();
        EXPECT_EQ(renderFrame(&in_data, &out_data, hostData, info, PF_PixelFormat_ARGB128), 4);
        EXPECT_EQ((host.memory().afterEachRequest.at(0) - 8) / kLaneBytes, c.layers);
        EXPECT_NEAR(info.focalDistance, c.focalDistance, 1e-6);
        host.takeCallLog();
    }
}

}  // namespace
