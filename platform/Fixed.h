// SPDX-License-Identifier: Apache-2.0
#pragma once
// The interface's 16.16 fixed point.

#include <algorithm>

#include "platform/Scalars.h"

inline constexpr PF_Fixed kFixedOne = 65536;
// Sampling takes radii from 1/65536 to 128 pixels.
inline constexpr PF_Fixed kMinFixedRadius = 1;
inline constexpr PF_Fixed kMaxFixedRadius = 128 * kFixedOne;

constexpr double fromFixed(PF_Fixed value) {
    return value * 1.52587890625e-5;
}

// The nearest fixed-point value, halves away from zero. Defined for every argument: values out of
// range are clamped to it, a NaN becomes its lower limit.
constexpr PF_Fixed toFixed(double value) {
    const double rounded = value * kFixedOne + (value >= 0.0 ? 0.5 : -0.5);
    const double bounded = std::min(std::max(-2147483648.0, rounded), 2147483647.0);
    return static_cast<PF_Fixed>(bounded);
}
