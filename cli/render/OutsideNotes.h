// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "headless/Parameters.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace cli {

// Notes what is left of --region if a part of it lies outside `limits`, the image's.
void noteCutRegion(const pictures::Window& region, const pictures::Window& limits,
                   pictures::Messages& messages);

// Notes each focus point that lies outside an image of `width` x `height` at `time`.
void noteOutsidePoints(const headless::ParameterSet& parameters, A_Time time, int width, int height,
                       pictures::Messages& messages);

}  // namespace cli
