// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's exposure curve, for light that is put together outside the effect.

#include "headless/Parameters.h"

namespace occlusion {

// It is the identity below the threshold and continues with slope 1: exponentially for an exposure
// above zero, and flattening for one below zero.
class LightCurve {
public:
    // By the controls "Exposure" and "Threshold" at `time`.
    LightCurve(const headless::ParameterSet& parameters, A_Time time);

    // From a colour of a picture to light, and back.
    double expand(double colour) const;
    double compress(double light) const;

private:
    double exposure_;
    double threshold_;
};

}  // namespace occlusion
