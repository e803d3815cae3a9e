// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "headless/Parameters.h"
#include "pictures/Messages.h"

namespace cli {

// The largest Exposure, in steps that the control shows, at which colours up to `largest` don't
// drown the rest of their block; none if `exposure` is low enough.
std::optional<double> suitableExposure(double exposure, double threshold, double largest);

// Sets Exposure to 0 for a picture in linear light, whose highlights need no expansion, and says
// so.
void leaveOutExposure(headless::ParameterSet& parameters, const std::string& picture,
                      pictures::Messages& messages);

// Warns if Exposure expands the brightest colour of the frame at `time` so far that rounding noise
// drowns the rest of its block. Throws Failure if it overflows, so that the image would be lost,
// unless that is forced.
void checkExposure(const headless::ParameterSet& parameters, A_Time time, double largestColour,
                   bool force, pictures::Messages& messages);

}  // namespace cli
