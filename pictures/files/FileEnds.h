// SPDX-License-Identifier: Apache-2.0
#pragma once
// Finds files that end early, where the image library reads them without an error.

#include <filesystem>
#include <string>
#include <string_view>

namespace pictures {

// Throws Failure for a format in which an early end would go unnoticed, or that holds no pictures.
// `format` is the library's name.
void requireReadFormat(const std::filesystem::path& file, const std::string& format);

// Throws Failure if a file is shorter than the pixels that its header promises (DPX after SMPTE
// 268M, Cineon, PSD) or lacks the mark of its end (PNG, JPEG, GIF); what follows the mark isn't
// looked at. Files of other formats pass, since the library reports their ends, except for what
// follows the pixels of a TGA file: extension area and footer. `format` is the library's name.
void requireWholeFile(const std::filesystem::path& file, const std::string& format);

// Whether a message that a reader left after a successful read doesn't mean missing or wrong
// pixels: JPEG files of cameras often have a few extra bytes between their markers.
bool isHarmless(const std::string& format, std::string_view message);

}  // namespace pictures
