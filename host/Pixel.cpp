// SPDX-License-Identifier: Apache-2.0
#include "host/Pixel.h"

#include <cstring>

namespace AEO::Pixel {

namespace {

constexpr float kU8Max = PF_MAX_CHAN8;
constexpr float kU16Max = PF_MAX_CHAN16;
constexpr float kU16Step = 3.0517578125e-05f;  // 2^-15

// Scales a channel to 0..max, rounds and clamps it. The comparisons turn a NaN into 0.
template <typename Channel>
Channel quantize(float value, float max) {
    const float scaled = value * max + 0.5f;
    if (!(scaled >= 0.0f)) return 0;
    return static_cast<Channel>(scaled > max ? max : scaled);
}

}  // namespace

f32 FromU8(const void* source) {
    PF_Pixel p;
    std::memcpy(&p, source, sizeof(p));
    return {p.alpha / kU8Max, p.red / kU8Max, p.green / kU8Max, p.blue / kU8Max};
}

f32 FromU16(const void* source) {
    PF_Pixel16 p;
    std::memcpy(&p, source, sizeof(p));
    return {p.alpha * kU16Step, p.red * kU16Step, p.green * kU16Step, p.blue * kU16Step};
}

f32 FromF32(const void* source) {
    f32 pixel;
    static_assert(sizeof(pixel) == sizeof(PF_PixelFloat));
    std::memcpy(&pixel, source, sizeof(pixel));
    return pixel;
}

void setToU8(const f32& pixel, void* target) {
    using Channel = A_u_char;
    const PF_Pixel p{quantize<Channel>(pixel.alpha, kU8Max), quantize<Channel>(pixel.red, kU8Max),
                     quantize<Channel>(pixel.green, kU8Max), quantize<Channel>(pixel.blue, kU8Max)};
    std::memcpy(target, &p, sizeof(p));
}

void setToU16(const f32& pixel, void* target) {
    using Channel = std::uint16_t;
    const PF_Pixel16 p{
        quantize<Channel>(pixel.alpha, kU16Max), quantize<Channel>(pixel.red, kU16Max),
        quantize<Channel>(pixel.green, kU16Max), quantize<Channel>(pixel.blue, kU16Max)};
    std::memcpy(target, &p, sizeof(p));
}

void setToF32(const f32& pixel, void* target) {
    std::memcpy(target, &pixel, sizeof(pixel));
}

}  // namespace AEO::Pixel
