// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "cli/render/RenderJob.h"
#include "cli/shot/ShotFiles.h"
#include "cli/shot/ShotOptions.h"

namespace cli {

// Looks at the depth maps of a shot for what all its frames share, and tells it. None if there is
// no depth map, or if each frame is to find its own. Throws Failure for a frame that isn't there
// and for maps that hold no depth, and what reading a map throws.
std::optional<DepthFindings> surveyShot(RenderSession& session, const ShotFiles& files,
                                        const Survey& survey, pictures::Messages& messages,
                                        std::ostream& lines);

}  // namespace cli
