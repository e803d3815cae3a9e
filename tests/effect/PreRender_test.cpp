// SPDX-License-Identifier: Apache-2.0
#include <bit>
#include <cstring>

#include "effect/SmartRender.h"
#include "headless/Effect.h"
#include "support/EffectFixture.h"

namespace {

using Rect = std::array<int, 4>;

Rect sides(const PF_LRect& r) {
    return std::bit_cast<Rect>(r);
}

// What the effect returned from the pre-render command, and left for the render command.
PF_PreRenderOutput answered;
PreRenderData left;

PF_Err watchedEntry(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                    PF_LayerDef* layer, void* extra) {
    auto* const record = static_cast<PF_PreRenderExtra*>(extra);
    if (command == PF_Cmd_SMART_PRE_RENDER) record->output->flags = 0x5555;
    const PF_Err err = EntryPointFunc(command, in_data, out_data, params, layer, extra);
    if (command == PF_Cmd_SMART_PRE_RENDER) {
        answered = *record->output;
        if (answered.pre_render_data != nullptr) {
            std::memcpy(&left, answered.pre_render_data, sizeof left);
        }
    }
    return err;
}

class PreRenderCommand : public HostFixture {
protected:
    PreRenderCommand() {
        effect.setUp();
        request.input = std::make_shared<headless::World>(201, 80, PF_PixelFormat_ARGB32);
        request.preRenderOnly = true;
    }
    void TearDown() override {
        effect.setDown();
        host.reclaimPreRenderRecords();
        HostFixture::TearDown();
    }

    // The rectangle requested of the layer, the two result rectangles, and the two of the record.
    void expectRects(double radius, bool repeat, const Rect& wanted,
                     const std::array<Rect, 5>& expected) {
        effect.parameters().set("Blur Radius", radius);
        effect.parameters().set("Edge Behavior", repeat ? 1 : 0);
        request.rect = std::bit_cast<PF_LRect>(wanted);
        const auto result = effect.renderFrame(request);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ((std::array{sides(result.inputRequest.rect), sides(result.resultRect),
                              sides(result.maxResultRect), sides(left.frameRect),
                              sides(left.paddedRect)}),
                  expected);
        EXPECT_EQ(result.inputRequest.preserve_rgb_of_zero_alpha, 0);
        EXPECT_EQ(result.inputRequest.channel_mask, 15);
        EXPECT_EQ(answered.delete_pre_render_data_func, nullptr);
        EXPECT_EQ(answered.flags, 0x5555) << "stays as the host set it";
    }

    headless::Effect effect{host, watchedEntry};
    headless::FrameRequest request;
};

TEST_F(PreRenderCommand, GrowsByTheReachUnlessEdgesAreRepeated) {
    const Rect whole{0, 0, 201, 80}, part{0, 0, 100, 70}, empty{7, 7, 7, 7};
    expectRects(10.5, true, {0, 0, 200, 70}, {whole, {0, 0, 200, 70}, whole, whole, whole});
    expectRects(0, false, part, {part, part, whole, whole, whole});
    const Rect grown{-20, -20, 221, 100};
    expectRects(20, false, empty, {empty, {7, 7, 0, 0}, grown, whole, grown});
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    const Rect half{0, 0, 101, 20}, padded{-11, -11, 112, 31};  // 100.5 and 10.5 are rounded up
    const Rect asked{-61, -11, 101, 26}, result{-11, 0, 90, 15};
    expectRects(21, false, {-50, 0, 90, 15}, {asked, result, padded, half, padded});
}

TEST_F(PreRenderCommand, AnswersThoughSomethingFails) {
    host.failAt(headless::Operation::kCheckoutLayer, 1, 513);
    EXPECT_EQ(effect.renderFrame(request).status, 513);
    EXPECT_EQ(sides(answered.result_rect), (Rect{0, 0, 0, 0}));
    EXPECT_NE(answered.pre_render_data, nullptr);
    host.failures().shrinkHandleAt(1);
    EXPECT_EQ(effect.renderFrame(request).status, 4) << "a block that is too small";
    EXPECT_EQ(answered.pre_render_data, nullptr);
}

}  // namespace
