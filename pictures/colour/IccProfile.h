// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "pictures/colour/BigEndian.h"

namespace pictures {

// What the tool understands of an embedded profile.
struct IccProfile {
    std::string transfer;          // name of the transfer function; empty if it is another curve
    bool colour = false;           // is for red, green and blue
    bool grey = false;             // is for one grey channel
    bool primariesOfSrgb = false;  // or grey
};

// Reads a profile of curves and primaries, ICC.1. Of profiles by tables, of damaged ones and of
// such for other channels no transfer function is known.
IccProfile readIccProfile(Bytes profile);

}  // namespace pictures
