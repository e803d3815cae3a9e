// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "pictures/Messages.h"
#include "platform/Scalars.h"

namespace pictures {

// The pixel aspect as a ratio that the effect can use. The effect truncates the ratio to a whole
// number, so an aspect within 1 % of square becomes 1/1, and one below 1 becomes 1/1 with a
// warning. `picture` is the name for the warning.
PF_RationalScale aspectRatio(double aspect, const std::string& picture, Messages& messages);

}  // namespace pictures
