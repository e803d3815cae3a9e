#pragma once
// Asks for an element before it is needed. The walks through a block that no processor foresees,
// down a column and in bit-reversed order, would else wait for memory at every wide element.

#include <cstddef>
#include <cstdint>

#include "transform/VectorElements.h"

namespace fft {

constexpr std::size_t kCacheLine = 64;

// Asks for the element `distance` elements after `near`, into the second-level cache. A hint reads
// nothing, so it may point outside the array, as it does at the end of a block; of an element that
// begins within a line, the last bytes may be left out. Elements narrower than a line are left to
// the processor: asking for each would cost more than the wait.
template <class T>
ORBEL_LANE_INLINE void prefetch([[maybe_unused]] const T* near,
                                [[maybe_unused]] std::size_t distance) {
#if defined(__GNUC__)
    if constexpr (sizeof(T) >= kCacheLine) {
        const auto address = reinterpret_cast<std::uintptr_t>(near) + distance * sizeof(T);
        for (std::size_t offset = 0; offset < sizeof(T); offset += kCacheLine) {
            __builtin_prefetch(reinterpret_cast<const void*>(address + offset), 0, 2);
        }
    }
#endif
}

}  // namespace fft
