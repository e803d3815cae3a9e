// SPDX-License-Identifier: Apache-2.0
#pragma once
// Prefetches elements. Processors don't predict walks down a column or in bit-reversed order, which
// would otherwise wait for memory at every wide element.

#include <cstddef>
#include <cstdint>

#include "transform/VectorElements.h"

namespace fft {

constexpr std::size_t kCacheLine = 64;

// Prefetches kBytes of the element `distance` elements after `near` into the second-level cache. A
// prefetch reads nothing, so it may point outside the array, as it does at the end of a block.
// Where an element begins within a line, its last bytes may be left out. Less than a line is left
// to the processor: the prefetches would cost more than the wait.
template <std::size_t kBytes, class T>
ORBEL_LANE_INLINE void prefetch([[maybe_unused]] const T* near,
                                [[maybe_unused]] std::size_t distance) {
#if defined(__GNUC__)
    if constexpr (kBytes >= kCacheLine) {
        // Computed as a number, since a pointer outside the array would be undefined.
        const auto address = reinterpret_cast<std::uintptr_t>(near) + distance * sizeof(T);
        for (std::size_t offset = 0; offset < kBytes; offset += kCacheLine) {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): nothing is read through it
            __builtin_prefetch(reinterpret_cast<const void*>(address + offset), 0, 2);
        }
    }
#endif
}

}  // namespace fft
