// SPDX-License-Identifier: Apache-2.0
#pragma once
// The exposure curve, which expands highlights before the blur and compresses them after it.
//
// It is the identity below `threshold` and continues from there with slope 1. Above, it grows
// exponentially for an exposure above zero and flattens towards threshold - 1 / exposure for one
// below zero. An exposure of zero is the identity throughout.

#include <cstddef>

#include "transform/LaneMath.h"

// Into the light domain of the convolution: `exposures` and their reciprocals are indexed by lane.
template <std::size_t N, class Exposures>
void expandExposure(ET::vecT<double, N>& values, const Exposures& exposures,
                    const Exposures& reciprocals, double threshold) {
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < N; ++k) {
        const double factor = exposures[k];
        const double reciprocal = reciprocals[k];
        const double value = values[k];
        const double expanded =
            ET::lane::expm1((value - threshold) * factor) * reciprocal + threshold;
        const double above = value < threshold ? value : expanded;
        values[k] = factor == 0.0 ? value : above;
    }
}

// One value for all lanes.
struct SameForAllLanes {
    double value;

    ORBEL_LANE_INLINE double operator[](std::size_t) const { return value; }
};

// The inverse. With a negative exposure it is infinite at the value threshold - 1 / exposure and
// NaN above it. No expanded value gets there; one that was not expanded, on a depth edge, may.
template <std::size_t N>
void compressExposure(ET::vecT<double, N>& values, double exposure, double threshold) {
    if (exposure == 0.0) return;
    const double reciprocal = 1.0 / exposure;
    ORBEL_INDEPENDENT_LANES
    for (std::size_t k = 0; k < N; ++k) {
        const double value = values[k];
        const double compressed =
            ET::lane::log1p((value - threshold) * exposure) * reciprocal + threshold;
        values[k] = value < threshold ? value : compressed;
    }
}
