// SPDX-License-Identifier: Apache-2.0
#pragma once
// The first half of the depth map's edge detection: differences.

#include "host/Vector.h"
#include "pipeline/BlockLayout.h"
#include "transform/VectorElements.h"

// Takes a quarter of the difference of the depth values on either side of each pixel of a block,
// left minus right in lane 0 and upper minus lower in lane 1. DetectEdge smooths them, which makes
// the two a 3x3 Sobel operator. Item i of the iteration is pixel i of the block, and the first of a
// run does the work of the whole run.
class Sobel {
public:
    using Gradient = ET::vecT<double, 2>;

    // Keeps its arguments by reference; both vectors have one entry for each pixel of `rect`.
    Sobel(const AEO::Vector<float>& depth, const iRect& rect, AEO::Vector<Gradient>& gradient);

    // Fills the gradient of the run that begins with pixel `index`, if one does. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    const AEO::Vector<float>& depth_;
    const iRect& rect_;
    AEO::Vector<Gradient>& gradient_;
};
