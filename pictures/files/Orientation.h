// SPDX-License-Identifier: Apache-2.0
#pragma once
// How the pixels of a file are turned to be upright.

#include "pictures/Picture.h"

namespace pictures {

// One of the eight orientations that EXIF and TIFF number from 1 (upright) to 8, for a stored
// picture with a given display window. The upright window keeps the corner's coordinates.
class Orientation {
public:
    // Numbers outside 1 to 8 count as upright.
    Orientation(int number, const Window& storedDisplay);

    bool upright() const { return !flipX_ && !flipY_ && !transposed_; }
    // Whether rows become columns.
    bool transposed() const { return transposed_; }

    // The upright place of a stored window, and the reverse.
    Window toUpright(const Window& stored) const;
    Window toStored(const Window& turned) const;

private:
    // Mirrored as stored, then transposed.
    bool flipX_;
    bool flipY_;
    bool transposed_;
    Window display_;  // as stored
};

}  // namespace pictures
