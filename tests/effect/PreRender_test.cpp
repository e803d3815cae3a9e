#include <cstring>

#include "effect/EffectFixture.h"
#include "effect/HandleBlock.h"
#include "effect/SmartRender.h"

namespace {

using Rect = std::array<int, 4>;

Rect sides(const PF_LRect& r) {
    return {r.left, r.top, r.right, r.bottom};
}

// What the effect asks of its input layer, and what it is answered.
struct Layer {
    int checkOuts = 0;
    PF_RenderRequest asked{};
    PF_CheckoutResult answer{};
    PF_Err err = 0;
};
Layer layer;

PF_Err checkoutLayer(PF_ProgPtr, PF_ParamIndex index, std::int32_t id,
                     const PF_RenderRequest* request, std::int32_t time, std::int32_t step,
                     std::uint32_t scale, PF_CheckoutResult* result) {
    EXPECT_THAT(std::vector<int>({index, id, time, step, static_cast<int>(scale)}),
                testing::ElementsAre(0, 0, 3, 2, 25));
    ++layer.checkOuts;
    layer.asked = *request;
    if (layer.err == 0) *result = layer.answer;
    return layer.err;
}

class PreRenderCommand : public EffectFixture {
protected:
    PreRenderCommand() {
        in_data.width = 200;
        in_data.height = 80;
        in_data.current_time = 3;
        in_data.time_step = 2;
        in_data.time_scale = 25;
        input.output_request = {{0, 0, 100, 100}, 1, 15, 1, {}, {9, 0, 0, 0}};
        layer = {};
        layer.answer.result_rect = {0, 0, 100, 80};
        layer.answer.max_result_rect = {0, 0, 200, 80};
        layer.answer.ref_width = 201;
        layer.answer.ref_height = 80;
        std::memset(&output, 0x55, sizeof output);
    }
    void TearDown() override {
        giveBack();
        EffectFixture::TearDown();
    }

    PF_Err preRender() {
        giveBack();
        PF_PreRenderCallbacks callbacks{checkoutLayer, nullptr};
        PF_PreRenderExtra extra{&input, &output, &callbacks};
        const PF_Err err = send(PF_Cmd_SMART_PRE_RENDER, nullptr, &extra);
        record = static_cast<PreRenderData*>(output.pre_render_data);
        return err;
    }
    void giveBack() {
        if (record != nullptr) AEO::disposeLockedBlock(*in_data.utils, record);
        record = nullptr;
    }
    // Sends the command with these controls; everything has to succeed.
    void expectRects(double radius, bool repeat, const Rect& asked, const Rect& result,
                     const Rect& frame, const Rect& padded) {
        parameters().set("Blur Radius", radius);
        parameters().set("Edge Behavior", repeat ? 1 : 0);
        ASSERT_EQ(preRender(), 0);
        EXPECT_EQ(sides(layer.asked.rect), asked);
        EXPECT_EQ(sides(output.result_rect), result);
        EXPECT_EQ(sides(record->frameRect), frame);
        EXPECT_EQ(sides(record->paddedRect), padded);
    }

    PF_PreRenderInput input{};
    PF_PreRenderOutput output;
    PreRenderData* record = nullptr;
};

TEST_F(PreRenderCommand, GrowsByTheReachOnAllSides) {
    in_data.downsample_x = {1, 2};
    in_data.downsample_y = {1, 4};
    input.output_request.rect = {-50, 0, 100, 100};
    // The result stays within the request; 201 / 2 is rounded up, 80 is divided by 4.
    expectRects(20, false, {-60, -10, 110, 110}, {-10, 0, 100, 90}, {0, 0, 101, 20},
                {-10, -10, 111, 30});
    EXPECT_EQ(sides(output.max_result_rect), (Rect{-10, -10, 210, 90}));
    EXPECT_EQ(layer.asked.preserve_rgb_of_zero_alpha, 0);
    EXPECT_EQ(layer.asked.channel_mask, 15);
    EXPECT_EQ(layer.asked.reserved[0], 9);
    EXPECT_EQ(input.output_request.preserve_rgb_of_zero_alpha, 1) << "the host's own record";
    EXPECT_EQ(handleBefore(record), AEO::handleOfBlock(record));
    EXPECT_EQ(output.delete_pre_render_data_func, nullptr);
    EXPECT_EQ(output.flags, 0x5555) << "stays as the host set it";
}

TEST_F(PreRenderCommand, StaysInsideTheLayerWithRepeatedEdges) {
    const Rect frame{0, 0, 201, 80};
    in_data.width = 105;
    expectRects(10.5, true, {0, 0, 105, 80}, {0, 0, 100, 80}, frame, frame);
}

TEST_F(PreRenderCommand, LeavesEmptyRectanglesEmpty) {
    expectRects(0, false, {0, 0, 100, 100}, {0, 0, 100, 80}, {0, 0, 201, 80}, {0, 0, 201, 80});
    input.output_request.rect = layer.answer.result_rect = {7, 7, 7, 7};
    layer.answer.ref_height = 0;
    expectRects(20, false, {7, 7, 7, 7}, {7, 7, 7, 7}, {0, 0, 201, 0}, {0, 0, 201, 0});
}

TEST_F(PreRenderCommand, AnswersThoughSomethingFails) {
    layer.err = 513;
    EXPECT_EQ(preRender(), 513);
    EXPECT_EQ(sides(output.result_rect), (Rect{0, 0, 0, 0}));
    EXPECT_NE(record, nullptr);

    failCheckin(in_data, 1, 514);
    EXPECT_EQ(preRender(), 514);
    EXPECT_EQ(layer.checkOuts, 1) << "no second one";
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(sides(record->frameRect), (Rect{0, 0, 0, 0}));

    layer.err = 0;
    host.failures().shrinkHandleAt(1);
    EXPECT_EQ(preRender(), 4) << "a block that is too small";
    EXPECT_EQ(record, nullptr);
}

}  // namespace
