// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's control "Focal Distance" from a place in the scene.

#include "pictures/depth/DepthMapReader.h"
#include "pictures/depth/MapPlacement.h"

namespace pictures {

// The Focal Distance at which pixels with `position` (of DepthCurve) are in focus: the position
// itself, or 1 - position if the effect inverts the map. Clamped to the control's range, -1 to 2.
double focalDistance(double position, bool inverted);

// The median of a map around a pixel of the image.
struct DepthSample {
    double value = 0;     // in the map's unit; kNothing where nothing is
    double position = 0;  // of the value in the map that the effect gets, 0..1
};

// Pixel (x, y) lies in the image; the window has 5x5 pixels of the image, as far as they are in it.
DepthSample sampleDepth(const DepthSource& source, const DepthCurve& curve, const Size& image,
                        MapPlacement placement, int x, int y);

}  // namespace pictures
