#include "headless/ToyEffect.h"

#include <algorithm>
#include <cstring>

namespace headless {

namespace {

ToyEffect* toy = nullptr;

PF_Err addParameters(PF_InData& in) {
    PF_ParamDef def{};
    def.param_type = PF_Param_SLIDER;
    std::strcpy(def.name, "Amount");
    def.u.sd.valid_max = 100;
    def.u.sd.dephault = 10;
    PF_Err err = in.inter.add_param(in.effect_ref, -1, &def);
    def = {};
    def.param_type = PF_Param_LAYER;
    std::strcpy(def.name, "Map");
    err |= in.inter.add_param(in.effect_ref, -1, &def);
    def = {};
    def.param_type = PF_Param_POINT;
    std::strcpy(def.name, "Point");
    return err | in.inter.add_param(in.effect_ref, -1, &def);
}

PF_LRect grown(PF_LRect r, std::int32_t by) {
    return {r.left - by, r.top - by, r.right + by, r.bottom + by};
}

PF_LRect intersection(const PF_LRect& a, const PF_LRect& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

}  // namespace

ToyEffect::ToyEffect() {
    toy = this;
}

ToyEffect::~ToyEffect() {
    toy = nullptr;
}

PF_Err ToyEffect::entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[],
                        PF_LayerDef*, void* extra) {
    if (cmd == PF_Cmd_SMART_PRE_RENDER) {
        auto& record = *static_cast<PF_PreRenderExtra*>(extra);
        return toy->onPreRender ? toy->onPreRender(*in, record) : toy->preRender(*in, record);
    }
    if (cmd == PF_Cmd_SMART_RENDER) {
        auto& record = *static_cast<PF_SmartRenderExtra*>(extra);
        return toy->onRender ? toy->onRender(*in, record) : render(*in, record);
    }
    if (toy->onOther) return toy->onOther(cmd, *in, *out, params);
    return cmd == PF_Cmd_PARAMS_SETUP ? addParameters(*in) : PF_Err_NONE;
}

PF_Err ToyEffect::preRender(PF_InData& in, PF_PreRenderExtra& extra) const {
    PF_RenderRequest request = extra.input->output_request;
    request.rect = grown(request.rect, margin);
    PF_CheckoutResult result{};
    const PF_Err err = extra.cb->checkout_layer(in.effect_ref, 0, 0, &request, in.current_time,
                                                in.time_step, in.time_scale, &result);
    extra.output->result_rect =
        intersection(grown(result.result_rect, margin), extra.input->output_request.rect);
    extra.output->max_result_rect = grown(result.max_result_rect, margin);
    const PF_Handle handle = in.utils->host_new_handle(16);
    auto* bytes = static_cast<std::byte*>(in.utils->host_lock_handle(handle));
    std::memcpy(bytes, &handle, sizeof handle);
    extra.output->pre_render_data = bytes + sizeof handle;
    return err;
}

PF_Err ToyEffect::render(PF_InData& in, PF_SmartRenderExtra& extra) {
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    PF_Err err = extra.cb->checkout_layer_pixels(in.effect_ref, 0, &input);
    if (err == PF_Err_NONE) err = extra.cb->checkout_output(in.effect_ref, &output);
    if (err == PF_Err_NONE && input && output) {
        PF_Rect target{input->origin_x - output->origin_x, input->origin_y - output->origin_y,
                       output->width, output->height};
        err = in.utils->copy(in.effect_ref, input, output, nullptr, &target);
    }
    disposeRecord(in, extra.input->pre_render_data);
    return err;
}

void ToyEffect::disposeRecord(PF_InData& in, void* record) {
    PF_Handle handle = nullptr;
    std::memcpy(&handle, static_cast<std::byte*>(record) - sizeof handle, sizeof handle);
    in.utils->host_unlock_handle(handle);
    in.utils->host_dispose_handle(handle);
}

}  // namespace headless
