// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <iosfwd>
#include <optional>

namespace pictures {

// What the chunks before a PNG's pixels say about its colours.
struct PngColour {
    // cICP: primaries, transfer function, matrix, full range; codes of ITU-T H.273
    std::optional<std::array<unsigned char, 4>> cicp;
    bool srgb = false;                               // sRGB
    std::optional<double> gamma;                     // gAMA: the exponent from value to light
    std::optional<std::array<double, 8>> primaries;  // cHRM: x and y of red, green, blue, white
};

// Reads the chunks from the start of a PNG file. Empty if it isn't one; of a damaged file whatever
// comes before the damage.
PngColour readPngColour(std::istream& file);

}  // namespace pictures
