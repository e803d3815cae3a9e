// SPDX-License-Identifier: Apache-2.0
#pragma once
// Scalar types, rectangles, pixels and status codes of the host's C interface.
//
// All types have a fixed width: the layouts are the same on Windows and macOS, x86_64 and arm64,
// while the C++ type `long` is not.

#include <cstddef>
#include <cstdint>

// Check a layout against the binary interface: a wrong one doesn't compile.
#define ORBEL_LAYOUT_SIZE(Type, size) static_assert(sizeof(Type) == (size), "size of " #Type)
#define ORBEL_LAYOUT_OFFSET(Type, field, offset) \
    static_assert(offsetof(Type, field) == (offset), "offset of " #Type "::" #field)

using A_long = std::int32_t;
using A_u_long = std::uint32_t;
using A_short = std::int16_t;
using A_char = char;
using A_u_char = std::uint8_t;
using A_FpLong = double;
using A_Err = std::int32_t;
using A_HandleSize = std::uint64_t;  // bytes

using AEGP_PluginID = std::int32_t;
using SPErr = std::int32_t;

using PF_Err = std::int32_t;
using PF_Cmd = std::int32_t;
using PF_Boolean = std::uint8_t;
using PF_ChannelMask = std::int32_t;
using PF_Field = std::int32_t;
using PF_Fixed = std::int32_t;  // 16.16
using PF_FpLong = double;
using PF_FpShort = float;
using PF_OutFlags = std::int32_t;
using PF_OutFlags2 = std::int32_t;
using PF_ParamFlags = std::int32_t;
using PF_ParamIndex = std::int32_t;
using PF_ParamType = std::int32_t;
using PF_ParamUIFlags = std::int32_t;
using PF_ParamValue = std::int32_t;
using PF_PixelFormat = std::int32_t;
using PF_Precision = std::int16_t;
using PF_Quality = std::int32_t;
using PF_RenderOutputFlags = std::int16_t;
using PF_SampleEdgeBehav = std::uint32_t;
using PF_ValueDisplayFlags = std::int16_t;
using PF_WorldFlags = std::int32_t;

// A relocatable block of host memory, which is locked to access its contents.
using PF_Handle = void**;
// Identifies the effect instance to the host (`effect_ref`).
using PF_ProgPtr = void*;

// Status codes.
inline constexpr PF_Err PF_Err_NONE = 0;
inline constexpr PF_Err PF_Err_OUT_OF_MEMORY = 4;
inline constexpr PF_Err PF_Err_INTERNAL_STRUCT_DAMAGED = 512;
inline constexpr PF_Err PF_Err_INVALID_INDEX = 513;
inline constexpr PF_Err PF_Err_UNRECOGNIZED_PARAM_TYPE = 514;
inline constexpr PF_Err PF_Err_INVALID_CALLBACK = 515;
inline constexpr PF_Err PF_Err_BAD_CALLBACK_PARAM = 516;
inline constexpr PF_Err PF_Interrupt_CANCEL = 517;

// A ratio such as the downsample factor or the pixel aspect.
struct PF_RationalScale {
    std::int32_t num;
    std::uint32_t den;
};
ORBEL_LAYOUT_SIZE(PF_RationalScale, 8);
ORBEL_LAYOUT_OFFSET(PF_RationalScale, num, 0);
ORBEL_LAYOUT_OFFSET(PF_RationalScale, den, 4);

// A rectangle of pixels; right and bottom are exclusive.
struct PF_LRect {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;
};
ORBEL_LAYOUT_SIZE(PF_LRect, 16);
ORBEL_LAYOUT_OFFSET(PF_LRect, left, 0);
ORBEL_LAYOUT_OFFSET(PF_LRect, top, 4);
ORBEL_LAYOUT_OFFSET(PF_LRect, right, 8);
ORBEL_LAYOUT_OFFSET(PF_LRect, bottom, 12);

using PF_Rect = PF_LRect;

struct PF_Point {
    std::int32_t h;
    std::int32_t v;
};
ORBEL_LAYOUT_SIZE(PF_Point, 8);
ORBEL_LAYOUT_OFFSET(PF_Point, h, 0);
ORBEL_LAYOUT_OFFSET(PF_Point, v, 4);

// A time of `value / scale` seconds.
struct A_Time {
    std::int32_t value;
    std::uint32_t scale;
};
ORBEL_LAYOUT_SIZE(A_Time, 8);
ORBEL_LAYOUT_OFFSET(A_Time, value, 0);
ORBEL_LAYOUT_OFFSET(A_Time, scale, 4);

// The channel values that stand for 1.
inline constexpr std::int32_t PF_MAX_CHAN8 = 255;
inline constexpr std::int32_t PF_MAX_CHAN16 = 32768;

// A pixel of 8 bits per channel, 0 to 255, straight alpha.
struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
};
ORBEL_LAYOUT_SIZE(PF_Pixel, 4);
ORBEL_LAYOUT_OFFSET(PF_Pixel, alpha, 0);
ORBEL_LAYOUT_OFFSET(PF_Pixel, red, 1);
ORBEL_LAYOUT_OFFSET(PF_Pixel, green, 2);
ORBEL_LAYOUT_OFFSET(PF_Pixel, blue, 3);

// A pixel of 16 bits per channel, 0 to 32768, straight alpha.
struct PF_Pixel16 {
    std::uint16_t alpha;
    std::uint16_t red;
    std::uint16_t green;
    std::uint16_t blue;
};
ORBEL_LAYOUT_SIZE(PF_Pixel16, 8);
ORBEL_LAYOUT_OFFSET(PF_Pixel16, alpha, 0);
ORBEL_LAYOUT_OFFSET(PF_Pixel16, red, 2);
ORBEL_LAYOUT_OFFSET(PF_Pixel16, green, 4);
ORBEL_LAYOUT_OFFSET(PF_Pixel16, blue, 6);

// A pixel of 32-bit float channels, unbounded, straight alpha.
struct PF_PixelFloat {
    PF_FpShort alpha;
    PF_FpShort red;
    PF_FpShort green;
    PF_FpShort blue;
};
ORBEL_LAYOUT_SIZE(PF_PixelFloat, 16);
ORBEL_LAYOUT_OFFSET(PF_PixelFloat, alpha, 0);
ORBEL_LAYOUT_OFFSET(PF_PixelFloat, red, 4);
ORBEL_LAYOUT_OFFSET(PF_PixelFloat, green, 8);
ORBEL_LAYOUT_OFFSET(PF_PixelFloat, blue, 12);

// Pixel formats, as the host reports them for a world.
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB32 = 0x62677261;   // "argb", 8 bits per channel
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB64 = 0x36316561;   // "ae16"
inline constexpr PF_PixelFormat PF_PixelFormat_ARGB128 = 0x32336561;  // "ae32", float
inline constexpr PF_PixelFormat PF_PixelFormat_INVALID = 0x66646162;  // "badf"
