// SPDX-License-Identifier: Apache-2.0
#pragma once
// The commands that the host sends and the two records that come with each of them.

#include "platform/Callbacks.h"
#include "platform/Suites.h"

// Commands. Those without a handler in the effect are named only for tracing.
inline constexpr PF_Cmd PF_Cmd_ABOUT = 0;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETUP = 1;
inline constexpr PF_Cmd PF_Cmd_UNUSED_0 = 2;
inline constexpr PF_Cmd PF_Cmd_GLOBAL_SETDOWN = 3;
inline constexpr PF_Cmd PF_Cmd_PARAMS_SETUP = 4;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETUP = 5;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_RESETUP = 6;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_FLATTEN = 7;
inline constexpr PF_Cmd PF_Cmd_SEQUENCE_SETDOWN = 8;
inline constexpr PF_Cmd PF_Cmd_DO_DIALOG = 9;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETUP = 10;
inline constexpr PF_Cmd PF_Cmd_RENDER = 11;
inline constexpr PF_Cmd PF_Cmd_FRAME_SETDOWN = 12;
inline constexpr PF_Cmd PF_Cmd_USER_CHANGED_PARAM = 13;
inline constexpr PF_Cmd PF_Cmd_UPDATE_PARAMS_UI = 14;
inline constexpr PF_Cmd PF_Cmd_EVENT = 15;
inline constexpr PF_Cmd PF_Cmd_GET_EXTERNAL_DEPENDENCIES = 16;
inline constexpr PF_Cmd PF_Cmd_COMPLETELY_GENERAL = 17;
inline constexpr PF_Cmd PF_Cmd_QUERY_DYNAMIC_FLAGS = 18;
inline constexpr PF_Cmd PF_Cmd_AUDIO_RENDER = 19;
inline constexpr PF_Cmd PF_Cmd_AUDIO_SETUP = 20;
inline constexpr PF_Cmd PF_Cmd_AUDIO_SETDOWN = 21;
inline constexpr PF_Cmd PF_Cmd_ARBITRARY_CALLBACK = 22;
inline constexpr PF_Cmd PF_Cmd_SMART_PRE_RENDER = 23;
inline constexpr PF_Cmd PF_Cmd_SMART_RENDER = 24;
inline constexpr PF_Cmd PF_Cmd_RESERVED1 = 25;
inline constexpr PF_Cmd PF_Cmd_RESERVED2 = 26;
inline constexpr PF_Cmd PF_Cmd_NUM_CMDS = 27;

// Flags by which an effect describes itself in PF_Cmd_GLOBAL_SETUP.
inline constexpr PF_OutFlags PF_OutFlag_KEEP_RESOURCE_OPEN = 1 << 0;
inline constexpr PF_OutFlags PF_OutFlag_DISPLAY_ERROR_MESSAGE = 1 << 8;
inline constexpr PF_OutFlags PF_OutFlag_DEEP_COLOR_AWARE = 1 << 25;
inline constexpr PF_OutFlags PF_OutFlag_SEND_UPDATE_PARAMS_UI = 1 << 26;
inline constexpr PF_OutFlags2 PF_OutFlag2_REVEALS_ZERO_ALPHA = 1 << 7;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_SMART_RENDER = 1 << 10;
inline constexpr PF_OutFlags2 PF_OutFlag2_FLOAT_COLOR_AWARE = 1 << 12;
inline constexpr PF_OutFlags2 PF_OutFlag2_SUPPORTS_THREADED_RENDERING = 1 << 27;

struct PF_InterfaceVersion {
    A_short major;
    A_short minor;
};
ORBEL_LAYOUT_SIZE(PF_InterfaceVersion, 4);

// How sound samples are stored.
struct PF_SoundFormatInfo {
    PF_FpLong rate;
    A_short num_channels;
    A_short format;
    A_short sample_size;
};
ORBEL_LAYOUT_SIZE(PF_SoundFormatInfo, 16);
ORBEL_LAYOUT_OFFSET(PF_SoundFormatInfo, num_channels, 8);
ORBEL_LAYOUT_OFFSET(PF_SoundFormatInfo, format, 10);
ORBEL_LAYOUT_OFFSET(PF_SoundFormatInfo, sample_size, 12);

struct PF_SoundWorld {
    PF_SoundFormatInfo fi;
    std::int32_t num_samples;
    void* dataP;
};
ORBEL_LAYOUT_SIZE(PF_SoundWorld, 32);
ORBEL_LAYOUT_OFFSET(PF_SoundWorld, num_samples, 16);
ORBEL_LAYOUT_OFFSET(PF_SoundWorld, dataP, 24);

// What the host passes with a command. Valid only during the command; the effect doesn't write to
// it.
struct PF_InData {
    PF_InteractCallbacks inter;
    PF_UtilCallbacks* utils;
    PF_ProgPtr effect_ref;
    PF_Quality quality;
    PF_InterfaceVersion version;
    std::int32_t serial_num;
    std::int32_t appl_id;
    std::int32_t num_params;
    std::int32_t reserved;
    std::int32_t what_cpu;
    std::int32_t what_fpu;
    std::int32_t current_time;
    std::int32_t time_step;
    std::int32_t total_time;
    std::int32_t local_time_step;
    std::uint32_t time_scale;
    PF_Field field;
    PF_Fixed shutter_angle;
    std::int32_t width;  // full resolution, whatever the downsample
    std::int32_t height;
    PF_Rect extent_hint;
    std::int32_t output_origin_x;
    std::int32_t output_origin_y;
    PF_RationalScale downsample_x;
    PF_RationalScale downsample_y;
    PF_RationalScale pixel_aspect_ratio;
    std::int32_t in_flags;
    PF_Handle global_data;
    PF_Handle sequence_data;
    PF_Handle frame_data;
    std::int32_t start_sampL;
    std::int32_t dur_sampL;
    std::int32_t total_sampL;
    PF_SoundWorld src_snd;
    SPBasicSuite* pica_basicP;
    std::int32_t pre_effect_source_origin_x;
    std::int32_t pre_effect_source_origin_y;
    PF_Fixed shutter_phase;
};
ORBEL_LAYOUT_SIZE(PF_InData, 408);
ORBEL_LAYOUT_OFFSET(PF_InData, inter, 0);
ORBEL_LAYOUT_OFFSET(PF_InData, utils, 176);
ORBEL_LAYOUT_OFFSET(PF_InData, effect_ref, 184);
ORBEL_LAYOUT_OFFSET(PF_InData, quality, 192);
ORBEL_LAYOUT_OFFSET(PF_InData, version, 196);
ORBEL_LAYOUT_OFFSET(PF_InData, serial_num, 200);
ORBEL_LAYOUT_OFFSET(PF_InData, appl_id, 204);
ORBEL_LAYOUT_OFFSET(PF_InData, num_params, 208);
ORBEL_LAYOUT_OFFSET(PF_InData, what_cpu, 216);
ORBEL_LAYOUT_OFFSET(PF_InData, what_fpu, 220);
ORBEL_LAYOUT_OFFSET(PF_InData, current_time, 224);
ORBEL_LAYOUT_OFFSET(PF_InData, time_step, 228);
ORBEL_LAYOUT_OFFSET(PF_InData, total_time, 232);
ORBEL_LAYOUT_OFFSET(PF_InData, local_time_step, 236);
ORBEL_LAYOUT_OFFSET(PF_InData, time_scale, 240);
ORBEL_LAYOUT_OFFSET(PF_InData, field, 244);
ORBEL_LAYOUT_OFFSET(PF_InData, shutter_angle, 248);
ORBEL_LAYOUT_OFFSET(PF_InData, width, 252);
ORBEL_LAYOUT_OFFSET(PF_InData, height, 256);
ORBEL_LAYOUT_OFFSET(PF_InData, extent_hint, 260);
ORBEL_LAYOUT_OFFSET(PF_InData, output_origin_x, 276);
ORBEL_LAYOUT_OFFSET(PF_InData, output_origin_y, 280);
ORBEL_LAYOUT_OFFSET(PF_InData, downsample_x, 284);
ORBEL_LAYOUT_OFFSET(PF_InData, downsample_y, 292);
ORBEL_LAYOUT_OFFSET(PF_InData, pixel_aspect_ratio, 300);
ORBEL_LAYOUT_OFFSET(PF_InData, in_flags, 308);
ORBEL_LAYOUT_OFFSET(PF_InData, global_data, 312);
ORBEL_LAYOUT_OFFSET(PF_InData, sequence_data, 320);
ORBEL_LAYOUT_OFFSET(PF_InData, frame_data, 328);
ORBEL_LAYOUT_OFFSET(PF_InData, start_sampL, 336);
ORBEL_LAYOUT_OFFSET(PF_InData, dur_sampL, 340);
ORBEL_LAYOUT_OFFSET(PF_InData, total_sampL, 344);
ORBEL_LAYOUT_OFFSET(PF_InData, src_snd, 352);
ORBEL_LAYOUT_OFFSET(PF_InData, pica_basicP, 384);
ORBEL_LAYOUT_OFFSET(PF_InData, pre_effect_source_origin_x, 392);
ORBEL_LAYOUT_OFFSET(PF_InData, pre_effect_source_origin_y, 396);
ORBEL_LAYOUT_OFFSET(PF_InData, shutter_phase, 400);

// What the effect returns. The host owns the record; handles stored in it become the host's.
struct PF_OutData {
    A_u_long my_version;
    A_char name[32];
    PF_Handle global_data;
    std::int32_t num_params;
    PF_Handle sequence_data;
    std::int32_t flat_sdata_size;
    PF_Handle frame_data;
    std::int32_t width;
    std::int32_t height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[256];
    std::int32_t start_sampL;
    std::int32_t dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
};
ORBEL_LAYOUT_SIZE(PF_OutData, 408);
ORBEL_LAYOUT_OFFSET(PF_OutData, my_version, 0);
ORBEL_LAYOUT_OFFSET(PF_OutData, name, 4);
ORBEL_LAYOUT_OFFSET(PF_OutData, global_data, 40);
ORBEL_LAYOUT_OFFSET(PF_OutData, num_params, 48);
ORBEL_LAYOUT_OFFSET(PF_OutData, sequence_data, 56);
ORBEL_LAYOUT_OFFSET(PF_OutData, flat_sdata_size, 64);
ORBEL_LAYOUT_OFFSET(PF_OutData, frame_data, 72);
ORBEL_LAYOUT_OFFSET(PF_OutData, width, 80);
ORBEL_LAYOUT_OFFSET(PF_OutData, height, 84);
ORBEL_LAYOUT_OFFSET(PF_OutData, origin, 88);
ORBEL_LAYOUT_OFFSET(PF_OutData, out_flags, 96);
ORBEL_LAYOUT_OFFSET(PF_OutData, return_msg, 100);
ORBEL_LAYOUT_OFFSET(PF_OutData, start_sampL, 356);
ORBEL_LAYOUT_OFFSET(PF_OutData, dur_sampL, 360);
ORBEL_LAYOUT_OFFSET(PF_OutData, dest_snd, 368);
ORBEL_LAYOUT_OFFSET(PF_OutData, out_flags2, 400);

extern "C" {

// The one function that a plug-in exports, under the name EntryPointFunc.
// `extra` depends on the command; `params` and `output` are null where a command has none.
using PF_EntryPoint = PF_Err (*)(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                 PF_ParamDef* params[], PF_LayerDef* output, void* extra);

}  // extern "C"
