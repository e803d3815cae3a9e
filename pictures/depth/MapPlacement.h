// SPDX-License-Identifier: Apache-2.0
#pragma once
// Where the pixels of an image lie in its depth map.

#include <cstddef>
#include <string>

namespace pictures {

// Width and height in pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

// Such as "400x300".
std::string sizeText(const Size& size);

// Whether a map that is stretched over an image keeps its proportions, within one pixel of the
// smaller of the two.
bool sameShape(const Size& image, const Size& map);

// The control "Placement" of the effect, in the order of its choices.
enum class MapPlacement { kCenter = 1, kStretch = 2 };

// The index of the map's pixel that lies at pixel (x, y) of the image; outside the map, the
// nearest.
std::size_t mapPixel(const Size& image, const Size& map, MapPlacement placement, int x, int y);

}  // namespace pictures
