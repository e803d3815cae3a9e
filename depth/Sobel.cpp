// SPDX-License-Identifier: Apache-2.0
#include "depth/Sobel.h"

#include "depth/Neighbours.h"

Sobel::Sobel(const AEO::Vector<float>& depth, const iRect& rect, AEO::Vector<Gradient>& gradient)
    : depth_(depth), rect_(rect), gradient_(gradient) {}

int Sobel::iterate(int, int index, int) {
    const Neighbours n(rect_, static_cast<std::uint32_t>(index));
    const float dx = depth_[n.at(n.left, n.row)] - depth_[n.at(n.right, n.row)];
    const float dy = depth_[n.at(n.col, n.upper)] - depth_[n.at(n.col, n.lower)];
    Gradient& g = gradient_[static_cast<std::size_t>(index)];
    g[0] = static_cast<double>(dx) * 0.25;
    g[1] = static_cast<double>(dy) * 0.25;
    return 0;
}
