// SPDX-License-Identifier: Apache-2.0
#pragma once
// The block buffer that all stages of the convolution share.
//
// A block of B x B pixels is one AEO::Vector of 2 x B x B elements: pixel p = y * B + x has its
// real part at element 2p and its imaginary part at element 2p + 1, for all channels at once.
//
// Channels of an element:
//   N = 1                            red, green, blue, alpha
//   N >= 2, after the store stage,
//           Normal                   red, green, blue, alpha, then the weight of each layer; rest 0
//           Split                    five channels per layer: red, green, blue, alpha, weight
//   N >= 2, from the multiply on     five channels per layer, in both modes; groups of layers that
//                                    the block isn't in hold leftovers
// Colours are multiplied by alpha, after expansion by the exposure curve.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "transform/LaneGroups.h"
#include "transform/VectorElements.h"

// A rectangle of pixels in the output world's coordinates; right and bottom are exclusive.
struct iRect {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;

    constexpr std::int32_t width() const { return right - left; }
    constexpr std::int32_t height() const { return bottom - top; }
};

// Pixels or positions of a block that one item of an iteration works on: the first item of a run
// does the work of all, and the others return at once.
constexpr std::size_t kPixelRun = 16;

// Element types of a frame with N depth layers, N from 1 to 16.
template <std::size_t N>
struct BlockLayout {
    static constexpr std::size_t kColours = 4;                   // red, green, blue, alpha
    static constexpr std::size_t kLayerChannels = kColours + 1;  // and the layer's weight
    static constexpr std::size_t kChannels = N == 1 ? kColours : kLayerChannels * N;
    // Of these, what Normal fills before the multiply stage: colours, and each layer's weight.
    static constexpr std::size_t kForwardChannels = N == 1 ? kColours : kColours + N;

    // From the multiply stage on, lanes are worked on in groups of whole layers, and groups that no
    // pixel of a block is in are left out.
    static constexpr std::size_t kGroupLayers = std::min(N, kGroupLanes / kLayerChannels);
    static constexpr std::size_t kGroups = (N + kGroupLayers - 1) / kGroupLayers;
    static_assert(kGroupLanes % kLayerChannels == 0);

    // Layers `first` to `last` - 1 of a group.
    struct LayerRange {
        std::size_t first;
        std::size_t last;
    };
    static constexpr LayerRange layersOf(std::size_t group) {
        const std::size_t first = group * kGroupLayers;
        return {first, std::min(N, first + kGroupLayers)};
    }

    // What the block buffer stores.
    using Element = ET::vecT<double, kChannels>;
    // What the kernel bank stores, one lane per layer.
    using KernelElement = ET::vecT<double, N>;
};
