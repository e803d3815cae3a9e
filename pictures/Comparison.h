#pragma once

#include "pictures/Picture.h"

namespace pictures {

// How far two pictures are apart, in the scale of their values (integers count as 0..1).
struct Difference {
    double largest = 0.0;
    double mean = 0.0;  // over all channel values
    int x = 0;          // where the largest is, in the pictures' co-ordinates
    int y = 0;
    int channel = 0;  // red, green, blue, alpha
};

// Compares the values as the files hold them; where one file is associated and the other straight,
// the straight one is multiplied by its alpha. What only one of the two covers counts as 0 in the
// other. Equal infinities, and not-a-numbers among each other, count as equal. Throws Failure if
// the pictures are of different size.
Difference comparePictures(const Picture& a, const Picture& b);

}  // namespace pictures
