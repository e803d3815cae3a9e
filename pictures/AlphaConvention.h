// SPDX-License-Identifier: Apache-2.0
#pragma once
// Whether the colours of a file are multiplied by alpha.

#include <OpenImageIO/imageio.h>

#include <span>
#include <string>

#include "pictures/Picture.h"

namespace pictures {

// What decides whether colours are multiplied by alpha.
enum class AlphaRule {
    kByFile,      // the file, otherwise its format
    kStraight,    // no
    kAssociated,  // yes
    kIgnore       // the picture counts as opaque, whatever its alpha
};

// Whether colours of a file with alpha are associated: by `rule`, otherwise by what the file says,
// otherwise by its format. `format` is the image library's name.
bool isAssociated(const OIIO::ImageSpec& imageSpec, const std::string& format, AlphaRule rule);

// Whether the pixels decide if the picture is associated: integer colours that are said to be, but
// not by the user.
bool pixelsDecide(const Picture& picture);

// Whether a colour exceeds its alpha by more than a rounding step of `type`: then integer colours
// up to 1 can't have been multiplied by alpha.
bool contradictsAssociation(std::span<const float> rgba, SampleType type);

}  // namespace pictures
