#pragma once
// The host's 16.16 fixed point, and its ratios.

#include <algorithm>
#include <cstdint>

#include "platform/Fixed.h"

namespace AEO {

using ::fromFixed;
using ::toFixed;

// A sampling radius: as toFixed, held in the range that the host takes.
constexpr PF_Fixed toFixedRadius(double value) {
    return std::clamp(toFixed(value), kMinFixedRadius, kMaxFixedRadius);
}

// The product of two fixed-point numbers as 32-bit integers, wrapping and not scaled back: what
// the host's `area` field is filled with.
constexpr PF_Fixed wrappingArea(PF_Fixed x, PF_Fixed y) {
    return static_cast<PF_Fixed>(static_cast<std::uint32_t>(x) * static_cast<std::uint32_t>(y));
}

// Such as a downsample factor, 1 / 2; the host gives no zero below.
constexpr double fromRatio(const PF_RationalScale& ratio) {
    return static_cast<double>(ratio.num) / static_cast<double>(ratio.den);
}

}  // namespace AEO
