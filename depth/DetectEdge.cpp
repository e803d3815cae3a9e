// SPDX-License-Identifier: Apache-2.0
#include "depth/DetectEdge.h"

#include <cmath>

#include "depth/Neighbours.h"

DetectEdge::DetectEdge(const AEO::Vector<Gradient>& gradient, const iRect& rect,
                       AEO::Vector<float>& edge)
    : gradient_(gradient), rect_(rect), edge_(edge) {}

// Each difference is smoothed with 1, 2, 1 perpendicular to its own direction.
int DetectEdge::iterate(int, int index, int) {
    const Neighbours n(rect_, static_cast<std::uint32_t>(index));
    const std::size_t here = n.at(n.col, n.row);
    const float sx =
        2.0F * lane(here, 0) + lane(n.at(n.col, n.upper), 0) + lane(n.at(n.col, n.lower), 0);
    const float sy =
        2.0F * lane(here, 1) + lane(n.at(n.left, n.row), 1) + lane(n.at(n.right, n.row), 1);
    edge_[here] = std::sqrt(sx * sx + sy * sy);
    return 0;
}

// One axis of a pixel's difference; all arithmetic from here on is in single precision.
float DetectEdge::lane(std::size_t pixel, std::size_t axis) const {
    return static_cast<float>(gradient_[pixel][axis]);
}
