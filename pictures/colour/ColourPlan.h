// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

#include "pictures/Messages.h"
#include "pictures/colour/ColourConverter.h"
#include "pictures/colour/ColourSpace.h"

namespace pictures {

// What a user may say about colours; empty names say nothing.
struct ColourWishes {
    std::string in{};     // the colour space of the input
    std::string out{};    // that of the output
    bool raw = false;     // keep all numbers
    bool linear = false;  // render in linear light
};

// The file to write, as far as its colours depend on it.
struct ColourTarget {
    std::string format;     // the image library's name
    bool floating = false;  // has half or float values
    bool grey = false;      // has one colour channel
};

// The colours of a picture on its way from file to file.
struct ColourPlan {
    ColourSpace source;
    std::string result;          // name of the output's colour space
    bool keepsProfile = false;   // the embedded profile is carried over
    bool keepsPrimaries = true;  // the meaning of red, green and blue doesn't change
    bool linearLight = false;    // what is rendered is linear light
    ColourConverter decode;      // from the file's values to those that are rendered
    ColourConverter encode;      // from these to the output's
    bool converts = false;       // the output's space isn't the source's
    bool chosen = false;         // the user named the output's space
    bool raw = false;            // the user wants the numbers as they are
};

// Follows from what the file says, what the target can hold and what the user says. A name that a
// file says and nobody knows is replaced by what the file implies, with a warning. Throws Failure
// if there is no such conversion; the user's names are known to `config`.
ColourPlan planColours(const ColourSpace& source, const std::string& sourceName,
                       const ColourTarget& target, const ColourWishes& wishes,
                       const ColourConfig& config, Messages& messages);

// One line if the output has another colour space than the source, and one if the source's
// primaries or profile, which aren't converted, can't be carried over.
void tellColours(const ColourPlan& plan, const std::string& sourceName,
                 const std::filesystem::path& output, const ColourTarget& target,
                 Messages& messages);

// Makes the metadata, a copy of the source's, true of the output's colours.
void describeColours(OIIO::ImageSpec& imageSpec, const ColourPlan& plan,
                     const ColourTarget& target);

}  // namespace pictures
