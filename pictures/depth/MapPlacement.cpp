// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/MapPlacement.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "pictures/WorldPixels.h"

namespace pictures {
namespace {

// One axis of image and map. Places are continuous and count from the corner of the display window:
// pixel 0 reaches from 0 to 1.
struct Axis {
    int image;  // pixels of the display window
    int map;
    int first;  // the pixels that the map holds, which may reach beyond its display window
    int end;
    MapPlacement placement;

    // Map pixels per image pixel.
    double scale() const {
        return placement == MapPlacement::kStretch ? static_cast<double>(map) / image : 1.0;
    }
    // The place in the map of a place in the image.
    double place(double at) const {
        return placement == MapPlacement::kStretch ? at * scale() : at - (image - map) * 0.5;
    }
    // The index of a map pixel, or of the nearest, in those that the map holds.
    int index(double pixel) const {
        return static_cast<int>(std::clamp<double>(pixel, first, end - 1)) - first;
    }
};

Axis columns(const Size& image, const Picture& map, MapPlacement placement) {
    return {image.width, map.display.width(), map.window.left - map.display.left,
            map.window.right - map.display.left, placement};
}

Axis rows(const Size& image, const Picture& map, MapPlacement placement) {
    return {image.height, map.display.height(), map.window.top - map.display.top,
            map.window.bottom - map.display.top, placement};
}

struct Tap {
    int index;
    float weight;
};

// The map's pixels that make up image pixel `at`: those in an interval around its middle, as wide
// as the image pixel, but at least as a map pixel. The latter interpolates linearly.
std::vector<Tap> tapsOf(const Axis& axis, int at) {
    const double width = std::max(axis.scale(), 1.0);
    const double from = axis.place(at + 0.5) - width / 2.0;
    std::vector<Tap> taps;
    for (double pixel = std::floor(from); pixel < from + width; pixel += 1.0) {
        const double covered = std::min(from + width, pixel + 1.0) - std::max(from, pixel);
        taps.push_back({axis.index(pixel), static_cast<float>(covered / width)});
    }
    return taps;
}

// `count` values for each of the taps' pixels in `from`, which are `stride` values apart, added up.
void blend(const std::vector<Tap>& taps, const float* from, std::size_t stride, float* to,
           std::size_t count) {
    std::fill_n(to, count, 0.0F);
    for (const auto& [index, weight] : taps) {
        const float* values = from + static_cast<std::size_t>(index) * stride;
        for (std::size_t i = 0; i < count; ++i) to[i] += weight * values[i];
    }
}

// Whether the map's pixels that are blended into one lie on both sides of a step.
bool hasStep(const Picture& map, const std::vector<Tap>& across, const std::vector<Tap>& down) {
    constexpr float kStep = 0.03F;  // of nearness; a slanted surface stays smooth
    for (std::size_t c = 0; c < kChannels; ++c) {
        float least = std::numeric_limits<float>::max();
        float most = std::numeric_limits<float>::lowest();
        for (const Tap& row : down) {
            for (const Tap& column : across) {
                const std::size_t at =
                    static_cast<std::size_t>(row.index) * static_cast<std::size_t>(map.width()) +
                    static_cast<std::size_t>(column.index);
                least = std::min(least, map.pixel(at)[c]);
                most = std::max(most, map.pixel(at)[c]);
            }
        }
        if (most - least > kStep) return true;
    }
    return false;
}

}  // namespace

std::string sizeText(const Size& size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

Size displaySize(const Picture& picture) {
    return {picture.display.width(), picture.display.height()};
}

bool sameShape(const Size& image, const Size& map) {
    const double scale = static_cast<double>(image.width) / map.width;
    const double error = std::fabs(map.height * scale - image.height);
    return error / std::max(scale, 1.0) <= 1.0;
}

std::size_t mapPixel(const Size& image, const Picture& map, MapPlacement placement, int x, int y) {
    const auto nearest = [](const Axis& axis, int at) {
        return static_cast<std::size_t>(axis.index(std::floor(axis.place(at + 0.5))));
    };
    return nearest(rows(image, map, placement), y) * static_cast<std::size_t>(map.width()) +
           nearest(columns(image, map, placement), x);
}

bool fitsEffect(const Picture& image, const Picture& map, MapPlacement placement) {
    return image.window == image.display &&
           (placement == MapPlacement::kCenter || displaySize(image) == displaySize(map));
}

std::shared_ptr<headless::World> layOver(const Picture& image, const Picture& map,
                                         MapPlacement placement, Steps steps) {
    const Size size = displaySize(image);
    const Axis across = columns(size, map, placement);
    const Axis down = rows(size, map, placement);
    std::vector<std::vector<Tap>> taps;
    for (int x = image.window.left; x < image.window.right; ++x) {
        taps.push_back(tapsOf(across, x - image.display.left));
    }

    auto world = std::make_shared<headless::World>(image.width(), image.height(),
                                                   headless::formatOfBits(32));
    const std::size_t mapRow = static_cast<std::size_t>(map.width()) * kChannels;
    std::vector<float> squeezed(mapRow);  // as high as a row of the image, as wide as the map
    std::vector<float> row(taps.size() * kChannels);
    for (int y = 0; y < image.height(); ++y) {
        const int at = y + image.window.top - image.display.top;
        const std::vector<Tap> tapsDown = tapsOf(down, at);
        blend(tapsDown, map.pixels.data(), mapRow, squeezed.data(), mapRow);
        for (std::size_t x = 0; x < taps.size(); ++x) {
            float* const pixel = row.data() + x * kChannels;
            blend(taps[x], squeezed.data(), kChannels, pixel, kChannels);
            if (steps == Steps::kSmooth || !hasStep(map, taps[x], tapsDown)) continue;
            const int from = static_cast<int>(x) + image.window.left - image.display.left;
            std::copy_n(map.pixel(mapPixel(size, map, placement, from, at)), kChannels, pixel);
        }
        storeRow(*world, 0, y, row);
    }
    return world;
}

}  // namespace pictures
