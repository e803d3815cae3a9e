// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <OpenImageIO/imageio.h>

#include <string>

#include "pictures/colour/IccProfile.h"
#include "pictures/colour/PngColour.h"

namespace pictures {

// How a picture's numbers stand for colours, as far as its file says or its format implies.
struct ColourSpace {
    std::string name;       // of a transfer function, or as the file names the space
    std::string implied;    // what the file would be if it said nothing
    bool assumed = true;    // neither the file nor its format's definition says it
    std::string format;     // of the file, by the image library's name
    std::string primaries;  // what says that they aren't those of sRGB; empty if they are
    std::string profile;    // description of the embedded profile; empty if there is none
    IccProfile icc;

    // Whether the profile's curve is none that the tool knows, so that `name` is assumed.
    bool unknownCurve() const { return !profile.empty() && icc.transfer.empty(); }
};

// The colour space of a picture that `format` (the image library's name) holds. `png` is what a
// PNG's chunks say. Where several places say something, the order is cICP, the embedded profile,
// the PNG's sRGB and gAMA, colorInteropID, what the library reports.
ColourSpace colourSpaceOf(const OIIO::ImageSpec& imageSpec, const std::string& format,
                          const PngColour& png = {});

// The colour space that the user names.
ColourSpace namedColourSpace(const std::string& name, const ColourSpace& ofFile);

}  // namespace pictures
