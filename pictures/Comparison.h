// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "pictures/Picture.h"

namespace pictures {

// How much two pictures differ, in the scale of their values (integers as 0..1).
struct Difference {
    double largest = 0.0;
    double mean = 0.0;  // over all channel values
    int x = 0;          // position of the largest difference, in the pictures' coordinates
    int y = 0;
    int channel = 0;  // red, green, blue, alpha
};

// A part of the pictures, and how much they differ there.
struct DifferentPart {
    Window window;
    double largest = 0.0;
    double mean = 0.0;  // over all channel values
};

// Compares the values as the pictures hold them. Where only one of the two has pixels, the other
// counts as 0. Equal infinities are equal, and so are two NaNs. The caller converts both to the
// same kind of alpha. Throws Failure if the display windows differ in size.
Difference comparePictures(const Picture& a, const Picture& b);

// The parts of at most 64 x 64 pixels that differ at all, at most `count`, the largest mean first.
std::vector<DifferentPart> mostDifferent(const Picture& a, const Picture& b, std::size_t count);

// The distances of red, green and blue of each pixel of both windows, row by row.
std::vector<float> differencePixels(const Picture& a, const Picture& b);

}  // namespace pictures
