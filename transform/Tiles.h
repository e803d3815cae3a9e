// SPDX-License-Identifier: Apache-2.0
#pragma once
// The tiles that a transposition is cut into, so that the lines of both places of its samples stay
// in the cache.

#include <cstddef>

namespace fft {

constexpr std::size_t kTile = 8;  // edge in samples

// Rows or columns of tiles from both ends in turn, the i-th of `count`: near one end they have less
// to do, and so each thread's share of them comes to about the same work.
constexpr std::size_t fromBothEnds(std::size_t i, std::size_t count) {
    return i % 2 == 0 ? i / 2 : count - 1 - i / 2;
}

}  // namespace fft
