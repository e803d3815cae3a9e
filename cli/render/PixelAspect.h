// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "headless/Parameters.h"
#include "pictures/Messages.h"

namespace cli {

// By how much applyPixelAspect() enlarges Blur Radius, if the aperture can be squeezed; at least 1.
double radiusEnlargement(double aspect);

// Prepares a render of pixels that are `aspect` times as wide as high, so that the aperture keeps
// its shape on the screen, and returns the ratio for the host. The effect itself knows only whole
// ratios, so other ones squeeze the aperture by Deform, enlarging Blur Radius where pixels are
// narrow; a note says so. Where that isn't possible, because the aperture is an image, rotated or
// deformed already, or turns in time, a warning says which ratio is used instead. The note is about
// the frame at `time`. `image` is for messages.
PF_RationalScale applyPixelAspect(headless::ParameterSet& parameters, A_Time time, double aspect,
                                  const std::string& image, pictures::Messages& messages);

}  // namespace cli
