// SPDX-License-Identifier: Apache-2.0
#pragma once
// The four neighbours of a block's pixel.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "pipeline/BlockLayout.h"

// Rows and columns of pixel `index` of a block and of its neighbours, counted from the block's
// corner. A neighbour beyond the block is replaced by the pixel on the block's border.
struct Neighbours {
    Neighbours(const iRect& rect, std::uint32_t index)
        : width(static_cast<std::uint32_t>(rect.width())), row(index / width), col(index % width) {
        left = col > 0 ? col - 1 : 0;
        right = std::min(col + 1, width - 1);
        upper = row > 0 ? row - 1 : 0;
        lower = std::min(row + 1, static_cast<std::uint32_t>(rect.height()) - 1);
    }

    // The index of the pixel at (x, y) of the block.
    std::size_t at(std::uint32_t x, std::uint32_t y) const { return std::size_t{y} * width + x; }

    std::uint32_t width;
    std::uint32_t row;
    std::uint32_t col;
    std::uint32_t left;
    std::uint32_t right;
    std::uint32_t upper;
    std::uint32_t lower;
};
