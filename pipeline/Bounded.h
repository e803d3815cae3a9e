// SPDX-License-Identifier: Apache-2.0
#pragma once
// Clamping that turns a NaN into the lower bound.

// `value`, at least `low` and at most `high`. The lower bound is tested first, by a comparison that
// a NaN fails, so that a NaN never reaches a conversion to an integer.
constexpr double bounded(double value, double low, double high) {
    const double raised = value > low ? value : low;
    return raised < high ? raised : high;
}
