// SPDX-License-Identifier: Apache-2.0
#pragma once
// The bank of blur kernels of one frame, one kernel for each depth layer.

#include <algorithm>
#include <cstddef>

#include "host/AEO_Base.h"
#include "host/Vector.h"
#include "transform/VectorElements.h"

// The share of the blur radius that depth layer `layer` of N gets, from 1 at layer 0 down to 1e-5
// at layer N - 1. The floor makes the sharpest layer a single point and keeps divisions finite.
template <std::size_t N>
double getNFactor(std::size_t layer) {
    constexpr double kLast = static_cast<double>(N - 1);
    return std::max(static_cast<double>(N - 1 - layer) / kLast, 1e-5);
}

template <>
inline double getNFactor<1>(std::size_t) {
    return 1.0;
}

// N kernels in one B x B block of complex samples, kernel l in lane l of every element: one
// transform then serves all of them. The sample of block position (col, row) has its real part at
// element 2 * (row * B + col) and its imaginary part at the next one. The origin is element 0, and
// positions from B / 2 on are negative offsets. Lane 0 is the most blurred.
template <std::size_t N>
class Filter {
public:
    using Element = ET::vecT<double, N>;

    // The block edge B for a blur radius in pixels: a power of two from 64 to 8192. It exceeds four
    // times any radius below 2048, so that the kernel leaves half of the block to the tile.
    static std::size_t GetFilterSize(double radius);

    // A bank of zeros for blocks of `blockSize` x `blockSize`. When the host has no memory for it,
    // data() is null and the bank must not be used.
    Filter(AEO::InData& context, std::size_t blockSize) : size(blockSize), kernels_(context) {
        kernels_.resize(2 * size * size);
    }

    Element* data() { return kernels_.data(); }
    const Element* data() const { return kernels_.data(); }
    Element& operator[](std::size_t i) { return kernels_[i]; }
    const Element& operator[](std::size_t i) const { return kernels_[i]; }

    const std::size_t size;  // the block edge B

private:
    AEO::Vector<Element> kernels_;
};

template <std::size_t N>
std::size_t Filter<N>::GetFilterSize(double radius) {
    constexpr std::size_t kLargest = 8192;
    std::size_t edge = 64;
    // NOLINTNEXTLINE(cert-flp30-c): doubling is exact
    for (double limit = 16.0; edge < kLargest && !(radius < limit); limit *= 2.0) edge *= 2;
    return edge;
}
