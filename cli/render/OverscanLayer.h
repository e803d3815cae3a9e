// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "headless/Parameters.h"
#include "pictures/Picture.h"

namespace cli {

// Where an image has overscan, the effect's layer is larger than the display window, in which users
// count. Moves the points of `parameters`, given in the display window, to their places in the
// layer.
void movePointsToLayer(headless::ParameterSet& parameters, const pictures::Picture& image);

}  // namespace cli
