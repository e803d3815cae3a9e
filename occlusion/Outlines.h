// SPDX-License-Identifier: Apache-2.0
#pragma once
// Pixels on an outline, which show two surfaces.

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "headless/World.h"
#include "occlusion/BlurScale.h"
#include "occlusion/Depths.h"

namespace occlusion {

// Red, green, blue and alpha; colours are multiplied by alpha.
using Colour = std::array<float, 4>;

// The colour of pixel (x, y).
Colour colourAt(const headless::World& picture, int x, int y);

// The largest of red, green and blue.
inline float brightest(const Colour& colour) {
    return std::max({colour[0], colour[1], colour[2]});
}

// How much a light counts where surfaces are continued: what is brighter than white hardly.
inline float dimWeight(float light) {
    const float above = std::max(light, 1.0F);
    return 1.0F / (above * above);
}

// A pixel of an antialiased outline. Its depth is that of one surface, and its colour
// share x own + (1 - share) x other.
struct MixedPixel {
    int x = 0;
    float share = 1.0F;          // of the surface whose depth it has
    float otherNearness = 0.0F;  // of the other surface
    Colour own{};
    Colour other{};
};

// The mixed pixels of a picture, row by row.
class Outlines {
public:
    // The picture holds straight colours in float and is as large as the map.
    Outlines(const headless::World& picture, const Depths& depths, const BlurScale& scale,
             int threads);

    // Those of a row, by ascending x.
    std::span<const MixedPixel> row(int y) const { return rows_[static_cast<std::size_t>(y)]; }

private:
    std::vector<std::vector<MixedPixel>> rows_;
};

}  // namespace occlusion
