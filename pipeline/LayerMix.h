// SPDX-License-Identifier: Apache-2.0
#pragma once
// How a pixel shares its weight between two neighbouring depth layers.

#include <cstddef>

#include "pipeline/Bounded.h"

// The weight of one pixel in each of the N layers, from the farthest from focus (0) to the one in
// focus (N - 1). At most two neighbours are above zero, and they add up to 1.
template <std::size_t N>
struct DepthReturn {
    double weights[N];

    double& operator[](std::size_t layer) { return weights[layer]; }
    double operator[](std::size_t layer) const { return weights[layer]; }
};

// Curves for the weight between two layer centres: odd functions that map [-1, 1] to itself.
class MixFunc {
public:
    static double _MixLinear(double x) { return x; }

    // An S-curve on either side of zero, flat at the layer centres.
    static double _MixSmooth(double x) { return x >= 0.0 ? step(x) : step(x + 1.0) - 1.0; }

private:
    static double step(double x) {
        const double c = bounded(x, 0.0, 1.0);
        return c * c * (3.0 - 2.0 * c);
    }
};
