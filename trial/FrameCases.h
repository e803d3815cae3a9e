#pragma once
// The frames of a trial.

#include <string>
#include <vector>

#include "headless/Effect.h"
#include "trial/Trial.h"

namespace trial {

// One frame with all values that it depends on.
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

// The number of depth layers where the frame is about something else: 6, or the largest there is.
int usualLayers(const Settings& settings);
// A frame of nightPicture() blurred by some pixels. More than one layer take depthPicture().
FrameCase nightFrame(Trial& trial, const std::string& name, int bits, int layers);

}  // namespace trial
