// SPDX-License-Identifier: Apache-2.0
#pragma once
// The depth of each pixel of a picture.

#include <cstddef>
#include <vector>

#include "headless/Parameters.h"
#include "occlusion/BlurScale.h"

namespace occlusion {

struct Depths {
    int width = 0;
    int height = 0;
    std::vector<float> nearness;  // 0 far to 1 near, row by row

    std::size_t at(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

// From the effect's map, read by its controls for channel and inversion at `time`. What is no
// number counts as far. Throws std::invalid_argument if there is no map with `width` x `height`
// pixels.
Depths readDepths(const headless::ParameterSet& parameters, int width, int height,
                  A_Time time = {0, 1});

// Whether there is an outline between the depths of two neighbouring pixels: their blurs differ by
// more than a pixel. A surface as steep as that is taken for one, too.
inline bool isOutline(const BlurScale& scale, float a, float b) {
    constexpr float kLeastStep = 1.0F;  // pixels of radius
    const float step = scale.signedRadius(a) - scale.signedRadius(b);
    return step > kLeastStep || step < -kLeastStep;
}

}  // namespace occlusion
