// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pictures/Messages.h"
#include "pictures/SourceImage.h"

namespace cli {

// Prints what isn't carried over from the image and how it was turned.
void tellAssumptions(const pictures::Picture& picture, pictures::Messages& messages);

// Prints what was found and changed while the pixels were read. `bits` are those of the render.
void tellFindings(const pictures::Picture& picture, const pictures::SourceFindings& findings,
                  int bits, pictures::Messages& messages);

}  // namespace cli
