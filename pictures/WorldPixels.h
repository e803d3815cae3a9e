// SPDX-License-Identifier: Apache-2.0
#pragma once
// Converts between the pixels of files and of worlds. A world holds straight colours: 0..255 in 8
// bits, 0..32768 in 16, any value in float.

#include <memory>
#include <vector>

#include "headless/World.h"
#include "pictures/Picture.h"

namespace pictures {

// The picture as a world of `bits` (8, 16 or 32) per channel, at the origin. Associated colours are
// divided by alpha as the world holds it, quantised, so that multiplying by it restores the file's
// value; where alpha is 0 they are kept. Integers are rounded and clamped.
std::shared_ptr<headless::World> makeWorld(const Picture& picture, int bits);

// The pixels of a world as straight red, green, blue, alpha, integers scaled to 0..1.
std::vector<float> straightPixels(const headless::World& world);

// Multiplies the colours of `pixels` (four values each) by alpha; where alpha is 0 they are kept.
void associate(std::vector<float>& pixels);

// The largest colour value of a world, scaled to 0..1 for integers.
double largestColour(const headless::World& world);

}  // namespace pictures
