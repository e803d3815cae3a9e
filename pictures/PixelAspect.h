#pragma once

#include <string>

#include "pictures/Messages.h"
#include "platform/Scalars.h"

namespace pictures {

// The shape of a pixel as a ratio that the effect can work with. It reads the ratio as a whole
// number, so a shape within 1 % of square becomes 1/1, and one below 1 becomes 1/1 with a warning.
// `picture` names the picture in the warning.
PF_RationalScale aspectRatio(double aspect, const std::string& picture, Messages& messages);

}  // namespace pictures
