// SPDX-License-Identifier: Apache-2.0
#pragma once
// The windows of a render: what the user counts in, the effect's layer, and the file's.

#include <optional>
#include <string>

#include "pictures/Picture.h"
#include "platform/Worlds.h"

namespace cli {

// What is rendered of an image.
struct RenderExtent {
    PF_RationalScale scale{1, 1};            // of the downsample, at most 1
    std::optional<pictures::Window> region;  // full-resolution pixels from the display's corner
    bool keepOverscan = false;               // also what the blur spreads beyond the layer
    bool cropToDisplay = false;              // nothing beyond the display window
};

// What a region without overscan is cut to, in the coordinates of a region.
pictures::Window regionLimits(const RenderExtent& extent, const pictures::Picture& picture);

// Such limits in words: "140x120 pixels from -20,-10", without the corner where it is 0,0.
std::string limitsText(const pictures::Window& limits);

// The rectangle to request from the effect, in pixels of the layer at the downsample. Throws
// UsageError for a region outside the image.
PF_LRect wantedRect(const RenderExtent& extent, const pictures::Picture& picture);

// The part of the file that the effect needs for `request`, a rectangle as above.
pictures::Window neededWindow(const PF_LRect& request, const pictures::Picture& picture,
                              PF_RationalScale scale);

// The place of a result in the coordinates of a file with windows, and the display window there.
pictures::Window resultWindow(const PF_LRect& result, const pictures::Picture& picture,
                              PF_RationalScale scale);
pictures::Window displayWindow(const pictures::Picture& picture, PF_RationalScale scale);

// Whether a result reaches beyond the layer.
bool growsBeyondLayer(const PF_LRect& result, const pictures::Picture& picture,
                      PF_RationalScale scale);

}  // namespace cli
