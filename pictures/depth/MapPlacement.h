// SPDX-License-Identifier: Apache-2.0
#pragma once
// Where the pixels of an image lie in its depth map.

#include <cstddef>
#include <memory>
#include <string>

#include "headless/World.h"
#include "pictures/Picture.h"

namespace pictures {

// Width and height in pixels.
struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

// Such as "400x300".
std::string sizeText(const Size& size);
// The size of the display window, in which users and maps count.
Size displaySize(const Picture& picture);

// Whether a map that is stretched over an image keeps its proportions, within one pixel of the
// smaller of the two.
bool sameShape(const Size& image, const Size& map);

// The control "Placement" of the effect, in the order of its choices.
enum class MapPlacement { kCenter = 1, kStretch = 2 };

// The index of the map's pixel under pixel (x, y) of the image's display window, which has the size
// `image`; outside the map, the nearest.
std::size_t mapPixel(const Size& image, const Picture& map, MapPlacement placement, int x, int y);

// What becomes of a step in a map with values 0 to 1, which is the outline of a thing.
enum class Steps {
    kSmooth,  // blended as everything else
    kKept     // the nearest pixel of the map is taken: no depth between those of two things
};

// Whether the effect can place the map itself. It knows no windows, and beyond the middle of the
// last pixels of a smaller map that is stretched it finds depth 0. The map has windows only if the
// image has.
bool fitsEffect(const Picture& image, const Picture& map, MapPlacement placement);

// A float world with the map's value for each pixel of the image's layer, its window. Values are
// interpolated where the map is smaller than the image, averaged over a pixel's area where it is
// larger, and repeated beyond the map's edges.
std::shared_ptr<headless::World> layOver(const Picture& image, const Picture& map,
                                         MapPlacement placement, Steps steps);

}  // namespace pictures
