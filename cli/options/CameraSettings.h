// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's controls for a lens and a map.

#include <functional>
#include <string>

#include "headless/Parameters.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthMapReader.h"
#include "pictures/depth/LensBlur.h"

namespace cli {

// A lens in front of the image to blur.
struct Camera {
    pictures::LensView view;   // its focus is unknown as long as it is 0
    std::string unit;          // of the map's distances, such as "m"
    double downsample = 1;     // of the render
    double largestRadius = 0;  // that Blur Radius may be set to
    double width = 0;          // of the image in pixels
    A_Time time{0, 1};         // of the frame
};

// Sets Blur Radius, Focal Distance, Profile and the rest of the lens's controls, and notes them.
// The focus is known; the other controls are set already. Warns about pixels that the controls
// can't blur as the lens does. Returns the value for DepthMapping::curve. Throws UsageError if the
// map holds no distances.
std::function<double(double)> applyCamera(headless::ParameterSet& parameters, const Camera& camera,
                                          const pictures::DepthSource& source,
                                          pictures::Messages& messages);

}  // namespace cli
