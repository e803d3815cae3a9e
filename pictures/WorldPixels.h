// SPDX-License-Identifier: Apache-2.0
#pragma once
// Converts between the pixels of files and of worlds. A world holds straight colours: 0..255 in 8
// bits, 0..32768 in 16, any value in float.

#include <memory>
#include <span>
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

// The same for as many pixels of row `y`, from column `x`, as fit into `rgba`.
void loadRow(const headless::World& world, int x, int y, std::span<float> rgba);
// Puts straight pixels into row `y` of a float world, from column `x`.
void storeRow(headless::World& world, int x, int y, std::span<const float> rgba);

// Divides the colours of `pixels` (four values each) by alpha; where alpha is 0 they are kept.
void makeStraight(std::span<float> pixels);

// What becomes of colours where alpha is 0 when they are multiplied by it.
enum class HiddenColour {
    kDropped,  // straight colours that can't be seen
    kKept      // light without alpha, such as a glow, in an associated picture
};

// Multiplies the colours of `pixels` (four values each) by alpha.
void associate(std::span<float> pixels, HiddenColour hidden);

}  // namespace pictures
