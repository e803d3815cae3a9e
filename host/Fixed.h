#pragma once
// The host's 16.16 fixed-point numbers, and its ratios.

#include <algorithm>
#include <cstdint>

#include "platform/Scalars.h"

namespace AEO {

inline constexpr double kFixedOne = 65536.0;
// The host's sampling takes radii from 1/65536 to 128 pixels.
inline constexpr PF_Fixed kMinFixedRadius = 1;
inline constexpr PF_Fixed kMaxFixedRadius = 128 * 65536;

constexpr double fromFixed(PF_Fixed value) {
    return value * 1.52587890625e-5;
}

// The nearest fixed-point value, halves away from zero. Defined for every argument: what doesn't
// fit ends at the limit of the range, a NaN at its lower one.
constexpr PF_Fixed toFixed(double value) {
    const double rounded = value * kFixedOne + (value >= 0.0 ? 0.5 : -0.5);
    const double bounded = std::min(std::max(-2147483648.0, rounded), 2147483647.0);
    return static_cast<PF_Fixed>(bounded);
}

// A sampling radius: as toFixed, clamped to the range that the host accepts.
constexpr PF_Fixed toFixedRadius(double value) {
    return std::clamp(toFixed(value), kMinFixedRadius, kMaxFixedRadius);
}

// The product of two fixed-point numbers as 32-bit integers, wrapping and not scaled back: the
// value of the host's `area` field.
constexpr PF_Fixed wrappingArea(PF_Fixed x, PF_Fixed y) {
    return static_cast<PF_Fixed>(static_cast<std::uint32_t>(x) * static_cast<std::uint32_t>(y));
}

// A ratio such as the downsample factor 1 / 2; the host passes no denominator of 0.
constexpr double fromRatio(const PF_RationalScale& ratio) {
    return static_cast<double>(ratio.num) / static_cast<double>(ratio.den);
}

}  // namespace AEO
