// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reads picture files.

#include <filesystem>
#include <string>

#include "pictures/Picture.h"
#include "pictures/PictureLayers.h"

namespace pictures {

// A file and, where the text names one, a layer or channel in it.
struct SourceName {
    std::filesystem::path file;
    std::string layer;
};

// Splits FILE:LAYER. If the whole text names an existing file, it is that file.
SourceName parseSourceName(const std::string& text);

// The channels of all parts of a file, with their layers. Throws Failure if the file is missing or
// no image.
std::vector<ChannelPlace> channelsOf(const std::filesystem::path& file);

// Which pixels to read from a file with a data and a display window (EXR).
enum class Extent {
    kDisplay,    // the display window; empty outside the data window
    kEverything  // the display and the data window
};

// Reads the picture that FILE or FILE:LAYER names. Colours outside the data window become
// `uncovered`, with alpha 0 if the file has alpha. Throws Failure if the file is missing,
// unreadable, no image or too large, and Interrupted after Control-C.
Picture readPicture(const std::string& text, Extent extent = Extent::kDisplay,
                    float uncovered = 0.0F);

// The pixel aspect from the picture's metadata; 1 if there is none.
double pixelAspectOf(const Picture& picture);

}  // namespace pictures
