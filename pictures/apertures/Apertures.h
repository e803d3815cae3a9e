// SPDX-License-Identifier: Apache-2.0
#pragma once
// Images of apertures: what a lens makes of a point of light out of focus. They are computed with
// operations that IEEE 754 defines to the last bit, and have the same values on every platform.

#include <atomic>
#include <map>
#include <string>
#include <vector>

namespace apertures {

class Coverage;

// A number that a kind of aperture is drawn with.
struct Option {
    std::string name;  // without hyphens
    std::string help;
    double least = 0.0;
    double most = 1.0;
    double fallback = 0.0;  // the default
    bool whole = false;     // only whole numbers
};

using Values = std::map<std::string, double>;  // by the options' names

struct Kind {
    std::string name;
    std::string help;
    std::vector<Option> options;
    void (*paint)(Coverage& coverage, const Values& values);
};

// All kinds, in the order in which they are listed.
const std::vector<Kind>& kinds();

// The values that a kind has by default.
Values defaultsOf(const Kind& kind);

inline constexpr int kLeastSize = 16;  // pixels a side
inline constexpr int kLargestSize = 4096;

// A square image, row by row: the share of light that passes each pixel, averaged over its area,
// from 0 to 1. An aperture of radius 1 touches the sides. `values` has a number for every option of
// the kind, in its range; `size` is from kLeastSize to kLargestSize. When `cancel` becomes true,
// the rest stays undrawn.
std::vector<float> draw(const Kind& kind, const Values& values, int size,
                        const std::atomic<bool>& cancel);

struct Sheet {
    int width = 0;
    int height = 0;
    std::vector<float> pixels;
};

// All kinds with their defaults, in rows of three, each `size` pixels wide.
Sheet drawSheet(int size, const std::atomic<bool>& cancel);

}  // namespace apertures
