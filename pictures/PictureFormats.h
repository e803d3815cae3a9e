#pragma once
// What the picture formats that the tool writes can hold.

#include <filesystem>
#include <string>
#include <vector>

#include "pictures/Picture.h"

namespace pictures {

enum class AlphaKind {
    None,
    Straight,    // by the format's definition
    Associated,  // by the format's definition
    Either       // the file says which
};

struct PictureFormat {
    std::string name;                   // as the image library calls it
    std::string title;                  // for messages
    std::vector<std::string> suffixes;  // with the dot, in lower case
    AlphaKind alpha;
    bool grey;                      // can hold one colour channel
    bool greyWithAlpha;             // can hold one colour channel and alpha
    bool windows;                   // has a data and a display window
    bool needsFile;                 // the encoder reads its own file again
    std::vector<SampleType> types;  // what a channel can be
};

// The format that the suffix of `path` means. Throws UsageError, with the list of suffixes, for any
// that can't be written.
const PictureFormat& formatOf(const std::filesystem::path& path);

// The type of the format that holds `wanted` with the fewest bits, or the widest one it has.
SampleType nearestType(const PictureFormat& format, SampleType wanted);

}  // namespace pictures
