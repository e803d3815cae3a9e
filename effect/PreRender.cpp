// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "effect/HandleBlock.h"
#include "effect/ParameterIndices.h"
#include "effect/SmartRender.h"
#include "host/AEO_Base.h"
#include "host/AEO_Parameter.h"
#include "host/Fixed.h"
#include "platform/Rectangles.h"

namespace {

// How far the frame's pixels spread, and whether beyond the layer.
struct Spread {
    double factorX;  // downsample
    double factorY;
    std::int32_t reach;  // pixels of this render, on both axes: the control's radius, rounded up
    bool repeatEdge;     // the blur stays inside the layer
};

std::int32_t roundedUp(double value) {
    return static_cast<std::int32_t>(std::ceil(value));
}

// The horizontal factor determines the reach of both axes, as it does the blur's radius.
Spread readSpread(PF_InData* in_data, int& err) {
    const double radius = AEO::Parameter::Fixed(in_data, kBlurRadius, err);
    const bool repeatEdge = AEO::Parameter::CheckBox(in_data, kEdgeBehavior, err) != 0;
    const double factorX = AEO::fromRatio(in_data->downsample_x);
    return {factorX, AEO::fromRatio(in_data->downsample_y), roundedUp(radius * factorX),
            repeatEdge};
}

// The rectangle, grown by the reach on every side; an empty one stays as it is.
PF_LRect grown(const PF_LRect& rect, std::int32_t reach) {
    if (isEmpty(rect)) return rect;
    return {rect.left - reach, rect.top - reach, rect.right + reach, rect.bottom + reach};
}

// The host's request, grown by the pixels around it that spread into it.
PF_RenderRequest inputRequest(const PF_InData& in_data, const PF_RenderRequest& wanted,
                              const Spread& spread) {
    PF_RenderRequest request = wanted;
    request.rect = grown(wanted.rect, spread.reach);
    if (spread.repeatEdge) {
        request.rect = intersection(request.rect, {0, 0, in_data.width, in_data.height});
    }
    request.preserve_rgb_of_zero_alpha = 0;
    return request;
}

int checkoutInput(const PF_InData& in_data, const PF_PreRenderExtra& extra,
                  const PF_RenderRequest& request, PF_CheckoutResult& layer) {
    constexpr std::int32_t kCheckoutId = 0;
    return extra.cb->checkout_layer(in_data.effect_ref, kInputLayer, kCheckoutId, &request,
                                    in_data.current_time, in_data.time_step, in_data.time_scale,
                                    &layer);
}

void setResultRects(PF_PreRenderOutput& output, const PF_LRect& wanted,
                    const PF_CheckoutResult& layer, const Spread& spread) {
    const std::int32_t growth = spread.repeatEdge ? 0 : spread.reach;
    output.result_rect = intersection(grown(layer.result_rect, growth), wanted);
    output.max_result_rect = grown(layer.max_result_rect, growth);
}

PreRenderData frameGeometry(const PF_CheckoutResult& layer, const Spread& spread) {
    const PF_LRect frame{0, 0, roundedUp(spread.factorX * layer.ref_width),
                         roundedUp(spread.factorY * layer.ref_height)};
    return {frame, spread.repeatEdge ? frame : grown(frame, spread.reach)};
}

}  // namespace

PF_Err PreRender(PF_InData* in_data, PF_OutData*, PF_PreRenderExtra* extra) {
    int err = PF_Err_NONE;
    AEO::InData context(in_data);
    const Spread spread = readSpread(in_data, err);

    // Without a check-out the layer counts as empty.
    const PF_RenderRequest& wanted = extra->input->output_request;
    const PF_RenderRequest request = inputRequest(*in_data, wanted, spread);
    PF_CheckoutResult layer{};
    if (err == PF_Err_NONE) err = checkoutInput(*in_data, *extra, request, layer);
    setResultRects(*extra->output, wanted.rect, layer, spread);

    PreRenderData* record = handle_block::create(*in_data->utils, frameGeometry(layer, spread));
    extra->output->pre_render_data = record;
    extra->output->delete_pre_render_data_func = nullptr;
    if (err == PF_Err_NONE && record == nullptr) err = PF_Err_OUT_OF_MEMORY;
    return err;
}
