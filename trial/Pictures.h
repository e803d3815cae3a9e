// SPDX-License-Identifier: Apache-2.0
#pragma once
// Synthetic test images that are byte-identical on every platform: they use only integer
// arithmetic, no library's mathematical functions or random generators.

#include <memory>

#include "headless/World.h"

namespace trial {

using Picture = std::shared_ptr<const headless::World>;

// A textured ramp with bright points, which exceed 1 in float, semi-transparent bands and a
// transparent corner.
Picture nightPicture(int width, int height, int bits);
// A ramp with a step and a little noise; opaque.
Picture depthPicture(int width, int height, int bits);
// An aperture that is lopsided and empty at its border, in alpha and in colour.
Picture shapePicture(int side, int bits);

}  // namespace trial
