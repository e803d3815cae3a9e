#pragma once
// Reads picture files.

#include <filesystem>
#include <string>

#include "pictures/Picture.h"

namespace pictures {

// A file and, where the text names one, a layer or channel in it.
struct SourceName {
    std::filesystem::path file;
    std::string layer;
};

// Takes FILE or FILE:LAYER apart. A file whose name is the whole text wins.
SourceName parseSourceName(const std::string& text);

// Which pixels of a file with windows (EXR) a picture holds.
enum class Extent {
    Display,    // the display window; empty where the file has no pixels
    Everything  // display and data window together
};

// Reads the picture that FILE or FILE:LAYER names. Colours outside the data window are `uncovered`,
// without alpha if the file has alpha. Throws Failure if it is missing, unreadable, no
// picture or too large, Interrupted on Control-C.
Picture readPicture(const std::string& text, Extent extent = Extent::Display,
                    float uncovered = 0.0F);

// The shape of a pixel, width by height, that the picture's metadata tell; 1 without.
double pixelAspectOf(const Picture& picture);

}  // namespace pictures
