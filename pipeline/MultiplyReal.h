// SPDX-License-Identifier: Apache-2.0
#pragma once
// The middle stage of a block: its spectrum times the spectra of the kernel bank, in place, for the
// half spectra of real samples.

#include <cstddef>

#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/SpectralProduct.h"
#include "transform/EvenShare.h"
#include "transform/LaneGroups.h"

// The iteration has an item for each position of a whole block; those that work multiply runs of
// positions of the rows 0 to size / 2.
template <std::size_t N, int K>
class MultiplyReal {
public:
    using Element = typename BlockLayout<N>::Element;

    // Keeps its arguments by reference. `filter` and `block` both hold forward transforms; lanes
    // outside `groups` are left alone.
    MultiplyReal(const Filter<N>& filter, AEO::Vector<Element>& block, LaneGroups groups)
        : filter_(filter),
          block_(block),
          groups_(groups),
          share_((filter.size / 2 + 1) * filter.size / kPixelRun, filter.size * filter.size) {}

    // Always returns 0.
    int iterate(int, int item, int) {
        share_.run(item, [&](std::size_t run) { multiplyRun(run); });
        return 0;
    }

private:
    using Layout = BlockLayout<N>;

    ORBEL_OUT_OF_LINE void multiplyRun(std::size_t run) {
        for (std::size_t p = kPixelRun * run; p < kPixelRun * (run + 1); ++p) multiply(p);
    }

    // The conjugate of a kernel's spectrum mirrors the kernel through its origin: the builder
    // stores the aperture mirrored, and a point of light spreads into the upright aperture. Block
    // and bank are both transposed, so the axes need no swap.
    void multiply(std::size_t position) {
        const auto& kr = filter_[2 * position];
        typename Layout::KernelElement ki;
        ki = -filter_[2 * position + 1];
        for (std::size_t g = Layout::kGroups; g-- > 0;) {
            if (!contains(groups_, g)) continue;
            const auto [first, last] = Layout::layersOf(g);
            SpectralProduct<N, K>::layers(kr, ki, block_[2 * position], block_[2 * position + 1],
                                          first, last);
        }
    }

    const Filter<N>& filter_;
    AEO::Vector<Element>& block_;
    LaneGroups groups_;
    EvenShare share_;
};
