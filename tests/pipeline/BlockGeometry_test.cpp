// SPDX-License-Identifier: Apache-2.0
#include "pipeline/BlockGeometry.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// The tiles of a frame cover every pixel exactly once, and each block holds its tile with at least
// the kernel's reach around it on all sides.
TEST(BlockGeometry, TilesCoverTheFrameOnceInsideTheirBlocks) {
    // 15.5 has the widest apron that a block of 64 allows.
    for (const auto& [blockSize, radius] : {std::pair{64, 0.5}, {64, 15.5}, {256, 50.5}}) {
        const int reach = static_cast<int>(std::ceil(radius));
        const int stride = blockSize - 2 * reach;
        for (const int width : {1, stride - 1, stride, stride + 1, 3 * stride + 7}) {
            const int height = 2 * stride - width % 5;
            const BlockGeometry geometry(static_cast<std::size_t>(blockSize), radius, width,
                                         height);
            std::vector<int> hits(static_cast<std::size_t>(width * height));
            for (int b = 0; b < geometry.count(); ++b) {
                const iRect tile = geometry.tile(b);
                const iRect block = geometry.block(tile);
                ASSERT_EQ(block.width(), blockSize);
                ASSERT_EQ(block.height(), blockSize);
                const int left = tile.left - block.left;
                const int right = block.right - tile.right;
                const int above = tile.top - block.top;
                const int below = block.bottom - tile.bottom;
                ASSERT_GE(std::min(left, above), reach) << "radius " << radius;
                // Centred, with the odd pixel on the right or at the bottom.
                ASSERT_EQ(right - left, (blockSize - tile.width()) % 2);
                ASSERT_EQ(below - above, (blockSize - tile.height()) % 2);
                for (int y = tile.top; y < tile.bottom; ++y) {
                    for (int x = tile.left; x < tile.right; ++x) {
                        ASSERT_TRUE(x < width && y < height);
                        ++hits[static_cast<std::size_t>(y * width + x)];
                    }
                }
            }
            EXPECT_EQ(hits, std::vector<int>(hits.size(), 1)) << width << " x " << height;
        }
    }
}

}  // namespace
