#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <thread>

#include "headless/ToyEffect.h"
#include "platform/Suites.h"

namespace headless {
namespace {

bool operator==(const PF_LRect& r, const std::array<std::int32_t, 4>& want) {
    return std::array{r.left, r.top, r.right, r.bottom} == want;
}

// The picture of a frame: every pixel tells its place.
std::shared_ptr<World> makePicture(int width, int height, PF_PixelFormat format) {
    auto picture = std::make_shared<World>(width, height, format);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture->set(x, y, {1, static_cast<float>(x) / 255, static_cast<float>(y) / 255, 0});
        }
    }
    return picture;
}

class FrameTest : public testing::Test {
protected:
    FrameTest() {
        effect.setUp();
        request.input = makePicture(40, 30, PF_PixelFormat_ARGB32);
    }

    ToyEffect toy;
    Host host{{2, defaultExecutor(), kNoMemoryLimit}};
    Effect effect{host, ToyEffect::entry};
    FrameRequest request;
};

TEST_F(FrameTest, WholeLayerAtFullResolution) {
    host.startCallLog();
    const FrameResult result = effect.renderFrame(request);
    const std::vector<std::string> calls{"PF_Cmd_SMART_PRE_RENDER", "checkout_layer 0",
                                         "host_new_handle 16",      "host_lock_handle",
                                         "PF_Cmd_SMART_RENDER",     "checkout_layer_pixels 0",
                                         "checkout_output",         "copy",
                                         "host_unlock_handle",      "host_dispose_handle"};
    EXPECT_EQ(host.takeCallLog(), calls);
    EXPECT_EQ(result.status, PF_Err_NONE);
    ASSERT_TRUE(result.rendered);
    EXPECT_TRUE(result.resultRect == (std::array{0, 0, 40, 30}));
    EXPECT_FALSE(result.outputUntouched);
    EXPECT_EQ(result.output->row<PF_Pixel>(29)[39].red, 39);
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(FrameTest, RequestIsCutToTheLayerAndMayGrowTheResult) {
    toy.margin = 3;
    request.rect = PF_LRect{-10, 5, 20, 50};
    request.bits = 32;
    toy.onRender = [&](PF_InData& in, PF_SmartRenderExtra& extra) {
        PF_EffectWorld* input = nullptr;
        extra.cb->checkout_layer_pixels(in.effect_ref, 0, &input);
        EXPECT_EQ(input->origin_y, 2);
        EXPECT_EQ(input->height, 28);
        EXPECT_GT(input->rowbytes, 23 * 16);
        EXPECT_EQ(World::formatOf(*input), PF_PixelFormat_ARGB128);
        EXPECT_FLOAT_EQ(static_cast<PF_PixelFloat*>(input->data)->green, 2.0F / 255);
        return ToyEffect::render(in, extra);
    };
    const FrameResult result = effect.renderFrame(request);
    EXPECT_EQ(result.status, PF_Err_NONE);
    EXPECT_TRUE(result.inputRequest.rect == (std::array{-13, 2, 23, 53}));
    EXPECT_TRUE(result.resultRect == (std::array{-3, 5, 20, 33}));
    EXPECT_TRUE(result.maxResultRect == (std::array{-3, -3, 43, 33}));
    EXPECT_TRUE(std::isnan(result.output->get(0, 0).red)) << "left alone by the effect";
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(FrameTest, DownsampleReducesPixelsButNotTheSizesToldAsReference) {
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    request.pixelAspect = {2, 1};
    toy.onPreRender = [&](PF_InData& in, PF_PreRenderExtra& extra) {
        EXPECT_EQ(in.height, 30);
        EXPECT_EQ(in.downsample_y.den, 4u);
        EXPECT_EQ(in.pixel_aspect_ratio.num, 2);
        EXPECT_TRUE(extra.input->output_request.rect == (std::array{0, 0, 20, 8}));
        PF_CheckoutResult checked{};
        extra.cb->checkout_layer(in.effect_ref, 0, 1, &extra.input->output_request, 0, 1, 1,
                                 &checked);
        EXPECT_EQ(checked.ref_height, 30);
        EXPECT_TRUE(checked.max_result_rect == (std::array{0, 0, 20, 8}));
        return toy.preRender(in, extra);
    };
    const FrameResult result = effect.renderFrame(request);
    ASSERT_EQ(result.status, PF_Err_NONE);
    EXPECT_EQ(result.output->width(), 20);
    EXPECT_EQ(result.output->row<PF_Pixel>(0)[1].red, 3) << "mean of columns 2 and 3, to nearest";
    EXPECT_EQ(result.output->row<PF_Pixel>(7)[0].green, 29) << "mean of rows 28 and 29 alone";
}

TEST_F(FrameTest, NamesTheRecordOfAFrameThatIsNotRendered) {
    request.preRenderOnly = true;
    EXPECT_FALSE(effect.renderFrame(request).rendered);
    request.preRenderOnly = false;
    request.rect = PF_LRect{100, 100, 120, 120};
    const FrameResult empty = effect.renderFrame(request);
    EXPECT_FALSE(empty.rendered) << "nothing to render";
    EXPECT_EQ(empty.status, PF_Err_NONE);

    const Accounts accounts = host.accounts();
    EXPECT_TRUE(accounts.allGivenBackBut(kPreRenderRecord)) << accounts.describe();
    EXPECT_EQ(accounts.outstanding.at(0).count, 2);
    EXPECT_EQ(host.reclaimPreRenderRecords(), 2);
    EXPECT_TRUE(host.accounts().clean());
}

TEST_F(FrameTest, WhatTheEffectForgetsOrDamagesIsListed) {
    toy.onRender = [&](PF_InData& in, PF_SmartRenderExtra& extra) {
        PF_ParamDef def{};
        in.inter.checkout_param(in.effect_ref, 1, 0, 1, 1, &def);
        EXPECT_EQ(def.u.sd.value, 10);
        PF_EffectWorld* output = nullptr;
        extra.cb->checkout_output(in.effect_ref, &output);
        static_cast<std::uint8_t*>(output->data)[output->width * 4] = 0;
        EXPECT_NE(extra.cb->checkin_layer_pixels(in.effect_ref, 0), 0);
        ToyEffect::disposeRecord(in, extra.input->pre_render_data);
        return PF_Err_NONE;
    };
    effect.renderFrame(request);
    const Accounts accounts = host.accounts();
    EXPECT_TRUE(accounts.allGivenBackBut("1 Amount")) << accounts.describe();
    EXPECT_FALSE(accounts.allGivenBack());
    EXPECT_EQ(accounts.faults.size(), 2u) << accounts.describe();
}

TEST_F(FrameTest, CallsFromTheWrongThreadOrPhaseAreFaults) {
    toy.onRender = [&](PF_InData& in, PF_SmartRenderExtra& extra) {
        PF_ParamDef def{};
        std::thread([&] {
            EXPECT_NE(in.inter.checkout_param(in.effect_ref, 1, 0, 1, 1, &def), 0);
        }).join();
        EXPECT_NE(in.inter.add_param(in.effect_ref, -1, &def), 0);
        return ToyEffect::render(in, extra);
    };
    effect.renderFrame(request);
    EXPECT_EQ(host.accounts().faults.size(), 2u) << host.accounts().describe();
    EXPECT_TRUE(host.accounts().allGivenBack());
}

TEST_F(FrameTest, ImpossibleRequestsAreRefused) {
    FrameRequest bad[5] = {request, request, request, request, request};
    bad[0].input = nullptr;
    bad[1].bits = 12;
    bad[2].downsampleX = {2, 1};
    bad[3].pixelAspect = {0, 1};
    bad[4].time.scale = 0;
    for (const auto& each : bad) EXPECT_THROW(effect.renderFrame(each), std::invalid_argument);
}

}  // namespace
}  // namespace headless
