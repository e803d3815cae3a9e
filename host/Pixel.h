// SPDX-License-Identifier: Apache-2.0
#pragma once
// Pixel formats, and pixels of any format in single precision.

#include <cstdint>

#include "platform/Scalars.h"

namespace AEO {

namespace PixelFormat {

// The host's four-character codes. A world may have any other value as well.
enum e : std::int32_t {
    kU8 = PF_PixelFormat_ARGB32,       // PF_Pixel, channels 0 to 255
    kU16 = PF_PixelFormat_ARGB64,      // PF_Pixel16, channels 0 to 32768
    kF32 = PF_PixelFormat_ARGB128,     // PF_PixelFloat, channels unbounded
    kUnknown = PF_PixelFormat_INVALID  // not asked for, or unknown to the host
};

}  // namespace PixelFormat

namespace Pixel {

// A pixel; the integer formats are on the scale 0 to 1.
struct f32 {
    float alpha;
    float red;
    float green;
    float blue;
};

using Reader = f32 (*)(const void* source);
using Writer = void (*)(const f32& pixel, void* target);

// Read the host pixel at `source`.
f32 FromU8(const void* source);   // value / 255
f32 FromU16(const void* source);  // value / 32768
f32 FromF32(const void* source);

// Write `pixel` to the host pixel at `target`. The integer forms round to nearest and clamp to the
// format's range; a NaN becomes 0.
void setToU8(const f32& pixel, void* target);
void setToU16(const f32& pixel, void* target);
void setToF32(const f32& pixel, void* target);

}  // namespace Pixel

}  // namespace AEO
