// SPDX-License-Identifier: Apache-2.0
#pragma once
// The three pixel types of the host as doubles on the scale 0 to 1, and their positions in a world.

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "pipeline/Bounded.h"
#include "platform/Worlds.h"

// The channel value of 1.0. Float channels have the scale of the doubles themselves.
template <class Pixel>
constexpr double pixelNorm();
template <>
constexpr double pixelNorm<PF_Pixel>() {
    return PF_MAX_CHAN8;
}
template <>
constexpr double pixelNorm<PF_Pixel16>() {
    return PF_MAX_CHAN16;
}

// A channel value as a double on that scale; float values pass unclamped.
template <class Pixel>
double channelToDouble(decltype(Pixel::alpha) value) {
    if constexpr (std::is_same_v<Pixel, PF_PixelFloat>) {
        return static_cast<double>(value);
    } else if constexpr (std::is_same_v<Pixel, PF_Pixel16>) {
        return value * (1.0 / pixelNorm<Pixel>());  // a power of two: exact
    } else {
        return value / pixelNorm<Pixel>();
    }
}

// A double as a channel value. Integer channels are clamped and truncated, and a NaN becomes 0;
// float channels are only narrowed.
template <class Pixel>
decltype(Pixel::alpha) channelFromDouble(double value) {
    using Channel = decltype(Pixel::alpha);
    if constexpr (std::is_same_v<Pixel, PF_PixelFloat>) {
        return static_cast<Channel>(value);
    } else {
        constexpr double kTop = pixelNorm<Pixel>();
        return static_cast<Channel>(static_cast<int>(bounded(value * kTop, 0.0, kTop)));
    }
}

// Pixel (x, y) of a world, which has to be inside. Rows are `rowbytes` apart; their product with y
// may exceed 32 bits.
template <class Pixel>
const Pixel& pixelAt(const PF_LayerDef& layer, std::int32_t x, std::int32_t y) {
    const char* row = static_cast<const char*>(layer.data) + std::ptrdiff_t{layer.rowbytes} * y;
    return reinterpret_cast<const Pixel*>(row)[x];
}
template <class Pixel>
Pixel& pixelAt(PF_LayerDef& layer, std::int32_t x, std::int32_t y) {
    return const_cast<Pixel&>(pixelAt<Pixel>(std::as_const(layer), x, y));
}

// Calls `stage` with a value of the pixel type of `format` as argument: float and 16 bits by their
// codes, 8 bits for everything else.
template <class Stage>
int withPixelType(PF_PixelFormat format, Stage&& stage) {
    if (format == PF_PixelFormat_ARGB128) return stage(PF_PixelFloat{});
    if (format == PF_PixelFormat_ARGB64) return stage(PF_Pixel16{});
    return stage(PF_Pixel{});
}
