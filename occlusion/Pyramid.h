// SPDX-License-Identifier: Apache-2.0
#pragma once
// Continues what is known of a picture's pixels into those where it isn't, by a pyramid of means:
// S. J. Gortler et al., "The Lumigraph", SIGGRAPH 1996, section 3.5 (pull and push).

#include <array>
#include <cstddef>
#include <vector>

#include "occlusion/Outlines.h"
#include "occlusion/Rows.h"

namespace occlusion {

// What a slab shows where it is seen.
struct Continued {
    Colour colour{};        // of the slab alone
    float radius = 0.0F;    // of its blur
    float presence = 0.0F;  // whether the slab is there at all, 0 to 1
};

// The same with the weights by which it is known; a value counts times its weight.
struct Known {
    Colour colour{};
    float radius = 0.0F;
    float presence = 0.0F;
    float colourWeight = 0.0F;
    float radiusWeight = 0.0F;
    float presenceWeight = 0.0F;

    void add(const Known& other, float factor);
    // Weights of more than 1 become 1.
    void saturate();
    // With less weight for a colour brighter than white: lamps and highlights aren't smeared.
    Known dimmed() const;
};

// The pyramid above the pixels, whose first level has half their size.
class Pyramid {
public:
    // `read(x, y)` returns the Known of a pixel; weights are 0 to 1. It is called on several
    // threads.
    template <class Read>
    Pyramid(int width, int height, int threads, const Read& read);

    // The values at a pixel, known or not, smooth from pixel to pixel.
    Continued at(int x, int y) const { return interpolated(levels_.front(), x, y); }

private:
    struct Level {
        int width = 0;
        int height = 0;
        std::vector<Known> cells;

        Known& at(int x, int y) {
            return cells[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x)];
        }
        const Known& at(int x, int y) const { return const_cast<Level*>(this)->at(x, y); }
    };

    // Makes a level of half the size from rows that `read` fills, each read once a thread.
    template <class Read>
    static Level reduced(int width, int height, int threads, const Read& read);
    static Level emptyLevel(int width, int height);
    static void reduceRow(const std::vector<Known>& row, std::vector<Known>& half);
    void build(int threads);
    static void complete(Level& fine, const Level& coarse, int threads);
    static Continued interpolated(const Level& level, int x, int y);

    static constexpr float kNearer = 0.75F;
    static constexpr float kFarther = 0.25F;

    std::vector<Level> levels_;
};

// Neighbouring cells overlap, each pixel counting 3/4 in the nearer and 1/4 in the farther one of a
// row or column: with cells side by side, the continued part of a moving thing would flicker.
template <class Read>
Pyramid::Level Pyramid::reduced(int width, int height, int threads, const Read& read) {
    Level level = emptyLevel((width + 1) / 2, (height + 1) / 2);
    forRows(level.height, threads, [&](int first, int last) {
        std::vector<Known> row(static_cast<std::size_t>(width));
        std::vector<Known> half(static_cast<std::size_t>(level.width));
        const auto addTo = [&](int cellRow, float factor) {
            if (cellRow < first || cellRow >= last) return;
            for (int x = 0; x < level.width; ++x) {
                level.at(x, cellRow).add(half[static_cast<std::size_t>(x)], factor);
            }
        };
        for (int y = std::max(2 * first - 1, 0); y < std::min(2 * last + 1, height); ++y) {
            for (int x = 0; x < width; ++x) row[static_cast<std::size_t>(x)] = read(x, y);
            reduceRow(row, half);
            addTo(y / 2, kNearer);
            addTo(y % 2 == 0 ? y / 2 - 1 : y / 2 + 1, kFarther);
        }
        for (int y = first; y < last; ++y) {
            for (int x = 0; x < level.width; ++x) level.at(x, y).saturate();
        }
    });
    return level;
}

template <class Read>
Pyramid::Pyramid(int width, int height, int threads, const Read& read) {
    levels_.push_back(reduced(width, height, threads, read));
    build(threads);
}

}  // namespace occlusion
