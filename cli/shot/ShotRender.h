// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/render/RenderJob.h"
#include "cli/shot/ShotFiles.h"
#include "cli/shot/ShotOptions.h"

namespace cli {

// What is to be rendered of a shot.
struct ShotRequest {
    const RenderPlan& plan;
    RenderOptions render;
    const ShotOptions& shot;
    const ShotFiles& files;
    std::optional<std::vector<int>> frames;  // none: as ShotFiles::frames
};

// Renders a shot and returns the exit code: 1 if frames failed and others were rendered
// nevertheless. Throws the types of Errors.h.
int renderShot(const ShotRequest& request, const Invocation& invocation);

}  // namespace cli
