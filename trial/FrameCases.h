// SPDX-License-Identifier: Apache-2.0
#pragma once
// The frames of a trial.

#include <string>
#include <vector>

#include "headless/Effect.h"
#include "trial/Trial.h"

namespace trial {

// A frame and everything that it depends on.
struct FrameCase {
    std::string name;
    headless::ParameterSet parameters;
    headless::FrameRequest request;
    bool blurs = true;  // false: the result is the input

    headless::FrameResult render(headless::Effect& effect) const {
        headless::FrameRequest whole = request;
        whole.parameters = &parameters;
        return effect.renderFrame(whole);
    }
};

// The number of depth layers for frames that test something else: 6, or the largest available.
int usualLayers(const Settings& settings);
// A frame of nightPicture() with a small blur; with depthPicture() if there is more than one layer.
FrameCase nightFrame(Trial& trial, const std::string& name, int bits, int layers);

}  // namespace trial
