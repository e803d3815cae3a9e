// SPDX-License-Identifier: Apache-2.0
#pragma once
// A line of text in a picture's metadata that says how it was made.

#include <OpenImageIO/imageio.h>

#include <string>

#include "pictures/files/PictureFormats.h"

namespace pictures {

// Replaces the settings in the metadata to write, which may be those of another picture, by one
// line of ASCII that begins with a brace; none if empty, or if the format holds no text. False if
// it holds none that long.
bool setSettings(OIIO::ImageSpec& imageSpec, const PictureFormat& format, const std::string& line);

// The settings in a picture's metadata; empty if there are none.
std::string settingsIn(const OIIO::ImageSpec& imageSpec);

}  // namespace pictures
