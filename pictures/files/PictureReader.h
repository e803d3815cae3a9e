// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reads whole pictures into memory.

#include <string>

#include "pictures/Picture.h"
#include "pictures/files/PictureFile.h"

namespace pictures {

// Which pixels to read from a file with a data and a display window (EXR).
enum class Extent {
    kDisplay,    // the display window; empty outside the data window
    kEverything  // the display and the data window
};

// Reads the picture that FILE or FILE:LAYER names, upright. Colours outside the data window become
// `uncovered`, with alpha 0 if the file has alpha. Throws Failure if the file is missing,
// unreadable, no image or too large, and Interrupted after Control-C.
Picture readPicture(const std::string& text, Extent extent = Extent::kDisplay,
                    float uncovered = 0.0F, AlphaRule rule = AlphaRule::kByFile);

// The pixel aspect of the upright picture from its metadata; 1 if there is none.
double pixelAspectOf(const Picture& picture);

}  // namespace pictures
