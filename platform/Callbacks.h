// SPDX-License-Identifier: Apache-2.0
#pragma once
// The callback tables that come with every command (`in_data->inter` and `*in_data->utils`).
//
// Entries that the effect doesn't use are untyped pointers, so that a call through one of them
// doesn't compile.

#include "platform/Parameters.h"

extern "C" {

// Parameter and progress callbacks. All return a status code.
struct PF_InteractCallbacks {
    // Fills `*param` with the value of parameter `index` at what_time / time_scale. Each successful
    // call has to be matched by one checkin_param.
    PF_Err (*checkout_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, std::int32_t what_time,
                             std::int32_t time_step, std::uint32_t time_scale, PF_ParamDef* param);
    // Checks the parameter in, and with it the pixels of a layer.
    PF_Err (*checkin_param)(PF_ProgPtr effect_ref, PF_ParamDef* param);
    // Adds a parameter during PF_Cmd_PARAMS_SETUP; index -1 appends. The definition is copied.
    PF_Err (*add_param)(PF_ProgPtr effect_ref, PF_ParamIndex index, PF_ParamDef* def);
    void* abort;
    // Reports `current` of `total`; non-zero means that the user cancelled.
    PF_Err (*progress)(PF_ProgPtr effect_ref, std::int32_t current, std::int32_t total);
    void* register_ui;
    void* checkout_layer_audio;
    void* checkin_layer_audio;
    void* get_audio_data;
    void* reserved_str[3];
    void* reserved[10];
};
ORBEL_LAYOUT_SIZE(PF_InteractCallbacks, 176);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, checkout_param, 0);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, checkin_param, 8);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, add_param, 16);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, abort, 24);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, progress, 32);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, register_ui, 40);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, reserved_str, 72);
ORBEL_LAYOUT_OFFSET(PF_InteractCallbacks, reserved, 96);

// The C library as the host offers it.
struct PF_ANSICallbacks {
    void* mathematics[15];
    // Formats into `buffer`, which has to be large enough; returns the number of characters.
    int (*sprintf)(A_char* buffer, const A_char* format, ...);
    // Copies `source` with its terminator.
    A_char* (*strcpy)(A_char* destination, const A_char* source);
    void* asin;
    void* acos;
    std::int32_t reserved;
};
ORBEL_LAYOUT_SIZE(PF_ANSICallbacks, 160);
ORBEL_LAYOUT_OFFSET(PF_ANSICallbacks, sprintf, 120);
ORBEL_LAYOUT_OFFSET(PF_ANSICallbacks, strcpy, 128);
ORBEL_LAYOUT_OFFSET(PF_ANSICallbacks, asin, 136);
ORBEL_LAYOUT_OFFSET(PF_ANSICallbacks, acos, 144);
ORBEL_LAYOUT_OFFSET(PF_ANSICallbacks, reserved, 152);

// Memory and pixel utilities. The handle operations may be called on any thread.
struct PF_UtilCallbacks {
    void* begin_sampling;
    void* subpixel_sample;
    void* area_sample;
    void* deprecated;
    void* end_sampling;
    void* composite_rect;
    void* blend;
    void* convolve;
    // Copies pixels from `src` to `dst`; a null rectangle means the whole world.
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst,
                   PF_Rect* src_rect, PF_Rect* dst_rect);
    void* fill;
    void* gaussian_kernel;
    void* iterate;
    void* premultiply;
    void* premultiply_color;
    void* new_world;
    void* dispose_world;
    void* iterate_origin;
    void* iterate_lut;
    void* transfer_rect;
    void* transform_world;
    // Returns a new block of `size` bytes, owned by the caller, or null when memory is short.
    PF_Handle (*host_new_handle)(A_HandleSize size);
    // Pins the block and returns its address, which stays valid until the unlock.
    void* (*host_lock_handle)(PF_Handle handle);
    // Unpins the block.
    void (*host_unlock_handle)(PF_Handle handle);
    // Frees the block.
    void (*host_dispose_handle)(PF_Handle handle);
    void* get_callback_addr;
    void* app;
    PF_ANSICallbacks ansi;
    void* colorCB[8];
    void* get_platform_data;
    // Returns the actual size of the block in bytes.
    A_HandleSize (*host_get_handle_size)(PF_Handle handle);
    void* iterate_origin_non_clip_src;
    void* iterate_generic;
    void* host_resize_handle;
    void* subpixel_sample16;
    void* area_sample16;
    void* fill16;
    void* premultiply_color16;
    void* iterate16;
    void* iterate_origin16;
    void* iterate_origin_non_clip_src16;
    void* get_pixel_data8;
    void* get_pixel_data16;
    std::int32_t reserved;
};
ORBEL_LAYOUT_SIZE(PF_UtilCallbacks, 552);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, copy, 64);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, fill, 72);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, host_new_handle, 160);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, host_lock_handle, 168);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, host_unlock_handle, 176);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, host_dispose_handle, 184);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, ansi, 208);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, colorCB, 368);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, host_get_handle_size, 440);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, get_pixel_data16, 536);
ORBEL_LAYOUT_OFFSET(PF_UtilCallbacks, reserved, 544);

}  // extern "C"
