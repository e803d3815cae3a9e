// SPDX-License-Identifier: Apache-2.0
#pragma once
// Transform of one square block of real samples, in place, over the host's threads.
//
// The block has the layout of FFT2D.h: sample (row y, column x) has its real part at element 2 (y
// size + x). Half of a real block's spectrum repeats the other half, conjugated, so only the
// frequencies 0 to size / 2 of the rows are computed, and two real rows ride in one complex row.
//
//   forward   reads the real elements and leaves the spectrum of FFT2D's forward transform in rows
//             0 to size / 2: row u is the horizontal, column v the vertical frequency. The other
//             rows are left over from the work.
//   inverse   the way back, for spectra of real blocks: leaves samples in the real elements of the
//             rows asked for; imaginary elements and other rows are left over.
//
// Nothing is scaled: forward and inverse together multiply by size x size. Both have the iterations
// of FFT2D: rows, transposition, rows, with as many items each.
//
// The last group of lanes may be narrower than the others.

#include <cstddef>

#include "transform/FFT2D.h"
#include "transform/LaneGroups.h"
#include "transform/VectorElements.h"

// Rows first to last - 1 of a block.
struct RowRange {
    std::size_t first;
    std::size_t last;
};

// Cheap to construct; owns nothing. Elements have kCell lanes, of which the first kLanes are
// transformed. Instances for blocks and kernel banks are compiled in this layer.
template <std::size_t kCell, std::size_t kLanes = kCell>
class RealFFT2D {
public:
    using Element = ET::vecT<double, kCell>;
    static constexpr std::size_t kGroups = (kLanes + kGroupLanes - 1) / kGroupLanes;
    static constexpr LaneGroups kAllGroups = allGroups(kGroups);

    // `size` is the one that `weights` were made for. Lanes outside `groups` are neither read nor
    // changed.
    RealFFT2D(FFTWeights& weights, Element* block, std::size_t size, LaneGroups groups = kAllGroups)
        : weights_(weights), block_(block), size_(size), groups_(groups) {}

    // Both return 0 or the result of the host's iteration, usually a cancel, which leaves the block
    // half transformed.
    int forward(AEO::InData& context);
    int inverse(AEO::InData& context, const RowRange& rows);

private:
    FFTWeights& weights_;
    Element* block_;
    std::size_t size_;
    LaneGroups groups_;
};
