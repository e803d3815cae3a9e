// SPDX-License-Identifier: Apache-2.0
#pragma once
// The blur that the effect's controls give to each depth.

#include <vector>

#include "headless/Parameters.h"

namespace occlusion {

// Nearness is the effect's scale of depth: 0 is far and 1 near, whether or not the effect inverts
// the map. Radii are those of discs with the same second moment, in pixels of the full resolution.
class BlurScale {
public:
    // By the controls of blur and depth at `time`, except Use Focus Point, for a render at
    // `downsample`, at most 1.
    BlurScale(const headless::ParameterSet& parameters, double downsample, A_Time time = {0, 1});

    // Negative behind the plane of focus.
    float signedRadius(float nearness) const;

private:
    std::vector<float> radii_;  // at even steps of nearness from 0 to 1
};

}  // namespace occlusion
