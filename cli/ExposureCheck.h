#pragma once

#include <optional>

#include "headless/Parameters.h"
#include "pictures/Messages.h"

namespace cli {

// The largest Exposure, in steps that the control shows, with which colours up to `largest` keep
// their neighbours in a block; none if they do with `exposure`.
std::optional<double> suitableExposure(double exposure, double threshold, double largest);

// Warns where Exposure expands the brightest colour so far that rounding noise drowns the rest of
// the block, or the number range itself ends.
void warnAboutExposure(const headless::ParameterSet& parameters, double largestColour,
                       pictures::Messages& messages);

}  // namespace cli
