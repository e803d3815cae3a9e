// SPDX-License-Identifier: Apache-2.0
#pragma once
// Sums without a loss.

#include "transform/VectorElements.h"

// The rounded sum of two numbers and the error of its rounding (Knuth).
struct ExactSum {
    double high;
    double low;
};

ORBEL_LANE_INLINE constexpr ExactSum exactSum(double a, double b) {
    const double sum = a + b;
    const double second = sum - a;
    return {sum, (a - (sum - second)) + (b - second)};
}
