// SPDX-License-Identifier: Apache-2.0
#pragma once
// The second half of the depth map's edge detection: smoothing and strength.

#include <cstddef>

#include "depth/Sobel.h"
#include "host/Vector.h"
#include "pipeline/BlockLayout.h"

// Turns the differences of Sobel into the strength of the depth edge at each pixel: 1 on both sides
// of a hard step of height 1, 2s on a ramp of s per pixel. Runs after Sobel has finished the whole
// block. Item i of the iteration is pixel i of the block, and the first of a run does the
// work of the whole run.
class DetectEdge {
public:
    using Gradient = Sobel::Gradient;

    // Keeps its arguments by reference; both vectors have one entry for each pixel of `rect`.
    DetectEdge(const AEO::Vector<Gradient>& gradient, const iRect& rect, AEO::Vector<float>& edge);

    // Fills the edges of the run that begins with pixel `index`, if one does. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    const AEO::Vector<Gradient>& gradient_;
    const iRect& rect_;
    AEO::Vector<float>& edge_;
};
