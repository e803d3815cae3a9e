// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "headless/Effect.h"

namespace cli {

// Renders two small frames with an effect that is set up: a point of light without a depth map,
// whose spot is known from the aperture's area, and points at several depths, whose values are
// those of every platform. Returns what is wrong with them; empty if nothing is.
std::string probeFrames(headless::Effect& effect);

}  // namespace cli
