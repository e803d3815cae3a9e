// SPDX-License-Identifier: Apache-2.0
#pragma once
// The exposure curve, which expands highlights before the blur and compresses them after it.
//
// It is the identity below `threshold` and continues from there with slope 1. Above, it grows
// exponentially for an exposure above zero and flattens towards threshold - 1 / exposure for one
// below zero. An exposure of zero is the identity throughout.

#include <cmath>

// Into the light domain of the convolution.
inline double expandExposure(double value, double exposure, double threshold) {
    if (exposure == 0.0 || value < threshold) return value;
    return (std::exp((value - threshold) * exposure) - 1.0) / exposure + threshold;
}

// The inverse. With a negative exposure it is infinite at the value threshold - 1 / exposure and
// NaN above it. No expanded value gets there; one that was not expanded, on a depth edge, may.
inline double compressExposure(double value, double exposure, double threshold) {
    if (exposure == 0.0 || value < threshold) return value;
    return std::log((value - threshold) * exposure + 1.0) / exposure + threshold;
}
