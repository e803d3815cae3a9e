// SPDX-License-Identifier: Apache-2.0
#pragma once
// The records of the two smart-render commands, PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER.

#include "platform/Worlds.h"

// Which pixels are wanted. Rectangles are in pixels of the current downsample.
struct PF_RenderRequest {
    PF_LRect rect;
    PF_Field field;
    PF_ChannelMask channel_mask;  // alpha 1, red 2, green 4, blue 8
    PF_Boolean preserve_rgb_of_zero_alpha;
    std::uint8_t unused[3];
    std::int32_t reserved[4];
};
ORBEL_LAYOUT_SIZE(PF_RenderRequest, 44);
ORBEL_LAYOUT_OFFSET(PF_RenderRequest, rect, 0);
ORBEL_LAYOUT_OFFSET(PF_RenderRequest, field, 16);
ORBEL_LAYOUT_OFFSET(PF_RenderRequest, channel_mask, 20);
ORBEL_LAYOUT_OFFSET(PF_RenderRequest, preserve_rgb_of_zero_alpha, 24);
ORBEL_LAYOUT_OFFSET(PF_RenderRequest, reserved, 28);

// What a layer can supply: `result_rect` is the request within the layer, `max_result_rect` the
// whole layer, `ref_width` and `ref_height` its size at full resolution.
struct PF_CheckoutResult {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    PF_Boolean solid;
    std::uint8_t reservedB[3];
    std::int32_t ref_width;
    std::int32_t ref_height;
    std::int32_t reserved[6];
};
ORBEL_LAYOUT_SIZE(PF_CheckoutResult, 76);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, result_rect, 0);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, max_result_rect, 16);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, par, 32);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, solid, 40);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, ref_width, 44);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, ref_height, 48);
ORBEL_LAYOUT_OFFSET(PF_CheckoutResult, reserved, 52);

struct PF_PreRenderInput {
    PF_RenderRequest output_request;
    A_short bitdepth;  // 8, 16 or 32
    const void* gpu_data;
    std::int32_t what_gpu;
    std::uint32_t device_index;
};
ORBEL_LAYOUT_SIZE(PF_PreRenderInput, 64);
ORBEL_LAYOUT_OFFSET(PF_PreRenderInput, output_request, 0);
ORBEL_LAYOUT_OFFSET(PF_PreRenderInput, bitdepth, 44);
ORBEL_LAYOUT_OFFSET(PF_PreRenderInput, gpu_data, 48);
ORBEL_LAYOUT_OFFSET(PF_PreRenderInput, what_gpu, 56);
ORBEL_LAYOUT_OFFSET(PF_PreRenderInput, device_index, 60);

extern "C" {

// What the effect will render. `pre_render_data` is passed back in PF_SmartRenderInput; without a
// delete function the effect frees it itself.
struct PF_PreRenderOutput {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags;
    void* pre_render_data;
    void (*delete_pre_render_data_func)(void* pre_render_data);
};
ORBEL_LAYOUT_SIZE(PF_PreRenderOutput, 56);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, result_rect, 0);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, max_result_rect, 16);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, solid, 32);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, reserved, 33);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, flags, 34);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, pre_render_data, 40);
ORBEL_LAYOUT_OFFSET(PF_PreRenderOutput, delete_pre_render_data_func, 48);

struct PF_PreRenderCallbacks {
    // Requests the pixels of layer parameter `index` under `checkout_id`, and fills `*result` with
    // what the layer can supply.
    PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, std::int32_t checkout_id,
                             const PF_RenderRequest* request, std::int32_t what_time,
                             std::int32_t time_step, std::uint32_t time_scale,
                             PF_CheckoutResult* result);
    void* GuidMixInPtr;
};
ORBEL_LAYOUT_SIZE(PF_PreRenderCallbacks, 16);
ORBEL_LAYOUT_OFFSET(PF_PreRenderCallbacks, checkout_layer, 0);
ORBEL_LAYOUT_OFFSET(PF_PreRenderCallbacks, GuidMixInPtr, 8);

}  // extern "C"

struct PF_PreRenderExtra {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
};
ORBEL_LAYOUT_SIZE(PF_PreRenderExtra, 24);
ORBEL_LAYOUT_OFFSET(PF_PreRenderExtra, input, 0);
ORBEL_LAYOUT_OFFSET(PF_PreRenderExtra, output, 8);
ORBEL_LAYOUT_OFFSET(PF_PreRenderExtra, cb, 16);

struct PF_SmartRenderInput {
    PF_RenderRequest output_request;
    A_short bitdepth;  // 8, 16 or 32
    void* pre_render_data;
    const void* gpu_data;
    std::int32_t what_gpu;
    std::uint32_t device_index;
};
ORBEL_LAYOUT_SIZE(PF_SmartRenderInput, 72);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, output_request, 0);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, bitdepth, 44);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, pre_render_data, 48);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, gpu_data, 56);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, what_gpu, 64);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderInput, device_index, 68);

extern "C" {

struct PF_SmartRenderCallbacks {
    // Returns the pixels requested under `checkout_id`. The world belongs to the host and is valid
    // until the check-in or the end of the command.
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, std::int32_t checkout_id,
                                    PF_EffectWorld** world);
    // Releases those pixels before the command ends.
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, std::int32_t checkout_id);
    // Returns the world to render into, which covers the result rectangle of the pre-render.
    PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** world);
};
ORBEL_LAYOUT_SIZE(PF_SmartRenderCallbacks, 24);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderCallbacks, checkout_layer_pixels, 0);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderCallbacks, checkin_layer_pixels, 8);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderCallbacks, checkout_output, 16);

}  // extern "C"

struct PF_SmartRenderExtra {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
};
ORBEL_LAYOUT_SIZE(PF_SmartRenderExtra, 16);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderExtra, input, 0);
ORBEL_LAYOUT_OFFSET(PF_SmartRenderExtra, cb, 8);
