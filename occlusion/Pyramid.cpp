// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Pyramid.h"

#include <algorithm>

namespace occlusion {
namespace {

void scale(float& value, float& weight) {
    if (weight <= 1.0F) return;
    value /= weight;
    weight = 1.0F;
}

// Adds what is missing to a weight of 1.
void fill(float& value, float& weight, float coarse) {
    value += (1.0F - weight) * coarse;
    weight = 1.0F;
}

}  // namespace

void Known::add(const Known& other, float factor) {
    for (std::size_t c = 0; c < colour.size(); ++c) colour[c] += factor * other.colour[c];
    radius += factor * other.radius;
    presence += factor * other.presence;
    colourWeight += factor * other.colourWeight;
    radiusWeight += factor * other.radiusWeight;
    presenceWeight += factor * other.presenceWeight;
}

void Known::saturate() {
    if (colourWeight > 1.0F) {
        for (float& channel : colour) channel /= colourWeight;
        colourWeight = 1.0F;
    }
    scale(radius, radiusWeight);
    scale(presence, presenceWeight);
}

Known Known::dimmed() const {
    Known result = *this;
    if (colourWeight <= 0.0F) return result;
    const float weight = dimWeight(brightest(colour) / colourWeight);
    for (float& channel : result.colour) channel *= weight;
    result.colourWeight *= weight;
    return result;
}

Pyramid::Level Pyramid::emptyLevel(int width, int height) {
    Level level{width, height, {}};
    level.cells.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    return level;
}

void Pyramid::reduceRow(const std::vector<Known>& row, std::vector<Known>& half) {
    std::ranges::fill(half, Known{});
    for (std::size_t x = 0; x < row.size(); ++x) {
        half[x / 2].add(row[x], kNearer);
        const std::size_t other = x % 2 == 0 ? x / 2 - 1 : x / 2 + 1;
        if (other < half.size()) half[other].add(row[x], kFarther);
    }
}

// Up to a single cell, and back with the gaps filled. What nobody knows stays 0.
void Pyramid::build(int threads) {
    while (levels_.back().width > 1 || levels_.back().height > 1) {
        const Level& fine = levels_.back();
        levels_.push_back(reduced(fine.width, fine.height, threads,
                                  [&](int x, int y) { return fine.at(x, y).dimmed(); }));
    }
    Known& top = levels_.back().at(0, 0);
    const auto whole = [](float& value, float weight) {
        if (weight > 0.0F) value /= weight;
    };
    for (float& channel : top.colour) whole(channel, top.colourWeight);
    whole(top.radius, top.radiusWeight);
    whole(top.presence, top.presenceWeight);
    for (std::size_t i = levels_.size() - 1; i-- > 0;) {
        complete(levels_[i], levels_[i + 1], threads);
        levels_.pop_back();
    }
}

void Pyramid::complete(Level& fine, const Level& coarse, int threads) {
    forRows(fine.height, threads, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            for (int x = 0; x < fine.width; ++x) {
                Known& cell = fine.at(x, y);
                const Continued around = interpolated(coarse, x, y);
                for (std::size_t c = 0; c < cell.colour.size(); ++c) {
                    cell.colour[c] += (1.0F - cell.colourWeight) * around.colour[c];
                }
                cell.colourWeight = 1.0F;
                fill(cell.radius, cell.radiusWeight, around.radius);
                fill(cell.presence, cell.presenceWeight, around.presence);
            }
        }
    });
}

// A finer cell (x, y) lies at a quarter or three quarters of a coarse one.
Continued Pyramid::interpolated(const Level& level, int x, int y) {
    const int u = std::clamp(x / 2 + (x % 2 == 0 ? -1 : 1), 0, level.width - 1);
    const int v = std::clamp(y / 2 + (y % 2 == 0 ? -1 : 1), 0, level.height - 1);
    Continued result;
    const auto add = [&](const Known& cell, float weight) {
        for (std::size_t c = 0; c < result.colour.size(); ++c) {
            result.colour[c] += weight * cell.colour[c];
        }
        result.radius += weight * cell.radius;
        result.presence += weight * cell.presence;
    };
    add(level.at(x / 2, y / 2), 9.0F / 16.0F);
    add(level.at(u, y / 2), 3.0F / 16.0F);
    add(level.at(x / 2, v), 3.0F / 16.0F);
    add(level.at(u, v), 1.0F / 16.0F);
    return result;
}

}  // namespace occlusion
