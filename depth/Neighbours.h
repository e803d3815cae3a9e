// SPDX-License-Identifier: Apache-2.0
#pragma once
// The neighbours of a block's pixels.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "pipeline/BlockLayout.h"

// Pixels first to last - 1 of a row of a block, and the rows above and below it. Beyond the block,
// the pixel on its border takes a neighbour's place.
struct RowRun {
    std::size_t width;  // of the block
    std::size_t row;
    std::size_t first;
    std::size_t last;
    std::size_t upper;
    std::size_t lower;

    // Calls `work(x, left, right)` for the columns of the run and their neighbours; all but those
    // at the block's border in a loop without a choice.
    template <class Work>
    void forColumns(Work&& work) const {
        std::size_t x = first;
        if (x == 0) {
            work(x, x, std::min<std::size_t>(1, width - 1));
            ++x;
        }
        for (const std::size_t inner = std::min(last, width - 1); x < inner; ++x) {
            work(x, x - 1, x + 1);
        }
        if (x < last) work(x, x - 1, x);
    }
};

// Calls `work(RowRun)` for the run that begins with pixel `index` of a block, if one does: once, or
// once for each row that it touches.
template <class Work>
void forRun(const iRect& rect, int index, Work&& work) {
    constexpr auto kRun = static_cast<std::uint32_t>(kPixelRun);
    auto first = static_cast<std::uint32_t>(index);
    if (first % kRun != 0) return;
    const auto width = static_cast<std::uint32_t>(rect.width());
    const auto height = static_cast<std::uint32_t>(rect.height());
    const std::uint32_t end = std::min(first + kRun, width * height);
    while (first < end) {
        const std::uint32_t row = first / width;
        const std::uint32_t col = first % width;
        const std::uint32_t last = std::min(col + (end - first), width);
        work(RowRun{width, row, col, last, row > 0 ? row - 1 : 0, std::min(row + 1, height - 1)});
        first += last - col;
    }
}
