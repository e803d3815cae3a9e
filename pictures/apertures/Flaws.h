// SPDX-License-Identifier: Apache-2.0
#pragma once
// What real lenses leave in a disc of light: the marks of turning and moulding, and dust. The same
// seed makes the same flaws.

#include <cstdint>
#include <vector>

#include "pictures/apertures/Coverage.h"

namespace apertures {

// The fine rings of an aspheric lens, from tools that leave waves in the glass or its mould.
class Rings {
public:
    // `count` rings of different widths.
    Rings(int count, std::uint32_t seed);

    // How much darker the light is at this radius (0 to 1), from 0 to 1.
    double darkness(double radius) const;

private:
    struct Ring {
        double begin;  // radius
        double end;
        double depth;
    };
    std::vector<Ring> rings_;  // from the centre outwards
};

// A grain that keeps light away.
struct Speck {
    Outline outline;
    double darkness = 0.0;  // 0 to 1
};

// `count` specks inside the circle of radius 1. They don't touch each other; the more there are,
// the smaller they become.
std::vector<Speck> scatterSpecks(int count, std::uint32_t seed);

}  // namespace apertures
