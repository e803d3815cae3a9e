// SPDX-License-Identifier: Apache-2.0
#pragma once
// The host's 16.16 fixed-point numbers, and its ratios.

#include <algorithm>
#include <cstdint>

#include "platform/Fixed.h"

namespace AEO {

using ::fromFixed;
using ::toFixed;

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
