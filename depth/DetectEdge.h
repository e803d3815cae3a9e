#pragma once
// The second half of the depth map's edge detection: smoothing and strength.

#include <cstddef>

#include "depth/Sobel.h"
#include "host/Vector.h"
#include "pipeline/BlockLayout.h"

// Turns the differences of Sobel into the strength of the depth edge at each pixel: a hard step of
// height 1 gives 1 on both of its sides, a ramp of s per pixel 2s. Runs after Sobel is through with
// the whole block. Item i of the iteration is pixel i of the block.
class DetectEdge {
public:
    using Gradient = Sobel::Gradient;

    // Keeps its arguments by reference; both vectors have one entry for each pixel of `rect`.
    DetectEdge(const AEO::Vector<Gradient>& gradient, const iRect& rect, AEO::Vector<float>& edge);

    // Fills edge[index]. Always 0.
    int iterate(int thread, int index, int count);

private:
    float lane(std::size_t pixel, std::size_t axis) const;

    const AEO::Vector<Gradient>& gradient_;
    const iRect& rect_;
    AEO::Vector<float>& edge_;
};
