// SPDX-License-Identifier: Apache-2.0
#pragma once
// The exposure curve, which expands highlights before the blur and compresses them after it.
//
// It is the identity below `threshold` and continues from there with slope 1. Above, it grows
// exponentially for an exposure above zero and flattens towards threshold - 1 / exposure for one
// below zero. An exposure of zero is the identity throughout.

#include <cstddef>

#include "transform/LaneMath.h"

// Into the light domain of the convolution, each lane by an exposure of its own.
template <std::size_t N>
void expandExposure(ET::vecT<double, N>& values, const ET::vecT<double, N>& exposures,
                    double threshold) {
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < N; ++k) {
        const double value = values[k];
        const double exposure = exposures[k];
        const double expanded =
            ET::lane::expm1((value - threshold) * exposure) / exposure + threshold;
        const double above = value < threshold ? value : expanded;
        values[k] = exposure == 0.0 ? value : above;
    }
}

// The inverse. With a negative exposure it is infinite at the value threshold - 1 / exposure and
// NaN above it. No expanded value gets there; one that was not expanded, on a depth edge, may.
template <std::size_t N>
void compressExposure(ET::vecT<double, N>& values, double exposure, double threshold) {
    if (exposure == 0.0) return;
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < N; ++k) {
        const double value = values[k];
        const double compressed =
            ET::lane::log1p((value - threshold) * exposure) / exposure + threshold;
        values[k] = value < threshold ? value : compressed;
    }
}
