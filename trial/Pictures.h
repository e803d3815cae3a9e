#pragma once
// Synthetic pictures that have the same bytes on every platform: integer arithmetic alone, no
// mathematical function and no random generator of a library.

#include <memory>

#include "headless/World.h"

namespace trial {

using Picture = std::shared_ptr<const headless::World>;

// A textured ramp with bright points, which exceed 1 in float, a half transparent band and a corner
// without alpha.
Picture nightPicture(int width, int height, int bits);
// A ramp with a step across it and a little noise; opaque.
Picture depthPicture(int width, int height, int bits);
// An aperture that is lopsided and empty at its border, in alpha and in colour.
Picture shapePicture(int side, int bits);

}  // namespace trial
