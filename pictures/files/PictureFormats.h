// SPDX-License-Identifier: Apache-2.0
#pragma once
// The file formats that the tool writes, and what each can hold.

#include <filesystem>
#include <string>
#include <vector>

#include "pictures/Picture.h"

namespace pictures {

enum class AlphaKind {
    kNone,
    kStraight,    // by the format's definition
    kAssociated,  // by the format's definition
    kEither       // the file says which
};

struct PictureFormat {
    std::string name;                   // the image library's name for it
    std::string title;                  // for messages
    std::vector<std::string> suffixes;  // with the dot, in lower case
    AlphaKind alpha;
    bool grey;                      // can hold one colour channel
    bool greyWithAlpha;             // can hold one colour channel and alpha
    bool windows;                   // has a data and a display window
    bool needsFile;                 // the encoder reads back its own file
    std::vector<SampleType> types;  // of a channel, from the narrowest
};

// The title of the format that the suffix of a name stands for, such as "PNG", whether or not the
// image library of this system has it; empty for an unknown suffix.
std::string titleBySuffix(const std::filesystem::path& path);

// The format for the suffix of `path`. Throws UsageError, listing the known suffixes, if there is
// none.
const PictureFormat& formatOf(const std::filesystem::path& path);

// Throws UsageError, listing the types, if the format doesn't have `type`.
void requireType(const PictureFormat& format, SampleType type);

// Throws UsageError if the suffix of `path` is for grey images only (.pgm) and the picture has
// colours.
void requireRoomForColours(const std::filesystem::path& path, const Picture& picture);

// The narrowest type of the format that holds `wanted` without loss, otherwise the widest it has.
SampleType nearestType(const PictureFormat& format, SampleType wanted);

}  // namespace pictures
