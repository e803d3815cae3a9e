// SPDX-License-Identifier: Apache-2.0
#pragma once
// The middle stage of a block: its spectrum times the spectra of the kernel bank, in place.

#include <cstdint>

#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/SpectralProduct.h"

// For spectra of any samples. Item i of the iteration is position i of the block.
template <std::size_t N, int K>
class Multiply {
public:
    using Element = typename BlockLayout<N>::Element;

    // Keeps its arguments by reference. `filter` and `block` both hold forward transforms.
    Multiply(const iRect& rect, const Filter<N>& filter, AEO::Vector<Element>& block)
        : rect_(rect), filter_(filter), block_(block) {}

    // Multiplies position `index`. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    std::size_t mirrored(std::size_t index) const;

    const iRect& rect_;
    const Filter<N>& filter_;
    AEO::Vector<Element>& block_;
};

template <std::size_t N, int K>
int Multiply<N, K>::iterate(int, int item, int) {
    const auto index = static_cast<std::size_t>(item);
    const std::size_t position = mirrored(index);
    SpectralProduct<N, K>::layers(filter_[2 * position], filter_[2 * position + 1],
                                  block_[2 * index], block_[2 * index + 1], 0, N);
    return 0;
}

// The position of the opposite frequency. The kernels are real in space, so this reads the
// conjugate of their spectrum and mirrors them through their origin: the builder stores the
// aperture mirrored, and a point of light spreads into the upright aperture. Block and bank are
// both transposed, so the axes need no swap.
template <std::size_t N, int K>
std::size_t Multiply<N, K>::mirrored(std::size_t index) const {
    const auto width = static_cast<std::uint32_t>(rect_.width());
    const auto height = static_cast<std::uint32_t>(rect_.height());
    const auto y = static_cast<std::uint32_t>(index) / width;
    const auto x = static_cast<std::uint32_t>(index) % width;
    const std::uint32_t xm = x == 0 ? 0 : width - x;
    const std::uint32_t ym = y == 0 ? 0 : height - y;
    return std::size_t{ym} * width + xm;
}
