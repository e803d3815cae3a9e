// SPDX-License-Identifier: Apache-2.0
#include "depth/DetectEdge.h"

#include <cmath>

#include "depth/Neighbours.h"

namespace {

// One axis of a pixel's difference; all arithmetic from here on is in single precision.
float lane(const DetectEdge::Gradient& gradient, std::size_t axis) {
    return static_cast<float>(gradient[axis]);
}

}  // namespace

DetectEdge::DetectEdge(const AEO::Vector<Gradient>& gradient, const iRect& rect,
                       AEO::Vector<float>& edge)
    : gradient_(gradient), rect_(rect), edge_(edge) {}

// Each difference is smoothed with 1, 2, 1 perpendicular to its own direction.
int DetectEdge::iterate(int, int index, int) {
    forRun(rect_, index, [&](const RowRun& run) {
        const Gradient* const here = gradient_.data() + run.row * run.width;
        const Gradient* const upper = gradient_.data() + run.upper * run.width;
        const Gradient* const lower = gradient_.data() + run.lower * run.width;
        float* const edge = edge_.data() + run.row * run.width;
        run.forColumns([=](std::size_t x, std::size_t left, std::size_t right) {
            const float sx = 2.0F * lane(here[x], 0) + lane(upper[x], 0) + lane(lower[x], 0);
            const float sy = 2.0F * lane(here[x], 1) + lane(here[left], 1) + lane(here[right], 1);
            edge[x] = std::sqrt(sx * sx + sy * sy);
        });
    });
    return 0;
}
