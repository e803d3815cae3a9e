// SPDX-License-Identifier: Apache-2.0
#pragma once
// How a frame is cut into tiles, and the block that each tile is convolved in.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "pipeline/BlockLayout.h"

// Tiles cover a frame row by row, left to right, without overlap. Each is centred in a square
// block, and the wrap-around of the transform stays in the apron between the two. The last tile of
// a row or column is narrower and its apron wider; the block size never changes.
class BlockGeometry {
public:
    // `radius` is the reach of the kernel in pixels, below a quarter of `blockSize`, so that the
    // tiles are at least half a block wide. Width and height are the frame's.
    BlockGeometry(std::size_t blockSize, double radius, std::int32_t width, std::int32_t height)
        : size_(static_cast<std::int32_t>(blockSize)),
          stride_(size_ - 2 * static_cast<std::int32_t>(std::ceil(radius))),
          width_(width),
          height_(height),
          across_((width_ - 1) / stride_ + 1),
          down_((height_ - 1) / stride_ + 1) {}

    std::int32_t count() const { return across_ * down_; }

    // Tile `index`, 0 to count() - 1, in the frame's coordinates.
    iRect tile(std::int32_t index) const {
        const std::int32_t left = index % across_ * stride_;
        const std::int32_t top = index / across_ * stride_;
        return {left, top, std::min(left + stride_, width_), std::min(top + stride_, height_)};
    }

    // The block around a tile. It may reach beyond the frame on any side. An odd pixel of margin
    // goes to the right or the bottom.
    iRect block(const iRect& tile) const {
        const std::int32_t left = tile.left - (size_ - tile.width()) / 2;
        const std::int32_t top = tile.top - (size_ - tile.height()) / 2;
        return {left, top, left + size_, top + size_};
    }

private:
    std::int32_t size_;
    std::int32_t stride_;
    std::int32_t width_;
    std::int32_t height_;
    std::int32_t across_;
    std::int32_t down_;
};
