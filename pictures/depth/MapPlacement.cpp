// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/MapPlacement.h"

#include <algorithm>
#include <cmath>

namespace pictures {
namespace {

// The place in the map of place `at` in the image, on one axis. The effect puts pixel 0 of a
// stretched map at pixel 0 of the image.
int placeOnAxis(int at, int image, int map, MapPlacement placement) {
    const double place = placement == MapPlacement::kStretch
                             ? at * (static_cast<double>(map) / image)
                             : at - (image - map) * 0.5;
    return static_cast<int>(std::clamp(std::round(place), 0.0, map - 1.0));
}

}  // namespace

std::string sizeText(const Size& size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

bool sameShape(const Size& image, const Size& map) {
    const double scale = static_cast<double>(image.width) / map.width;
    const double error = std::fabs(map.height * scale - image.height);
    return error / std::max(scale, 1.0) <= 1.0;
}

std::size_t mapPixel(const Size& image, const Size& map, MapPlacement placement, int x, int y) {
    const int column = placeOnAxis(x, image.width, map.width, placement);
    const int row = placeOnAxis(y, image.height, map.height, placement);
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(map.width) +
           static_cast<std::size_t>(column);
}

}  // namespace pictures
