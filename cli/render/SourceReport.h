// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pictures/Messages.h"
#include "pictures/SourceImage.h"

namespace cli {

// Prints how the image was turned, if it was.
void tellOrientation(const pictures::Picture& picture, pictures::Messages& messages);

// Prints which layers and channels of the image aren't carried over.
void tellLeftOut(const std::string& image, const std::vector<std::string>& names,
                 pictures::Messages& messages);

// Prints what was found and changed while the pixels were read. `bits` are those of the render.
void tellFindings(const pictures::Picture& picture, const pictures::SourceFindings& findings,
                  int bits, pictures::Messages& messages);

}  // namespace cli
