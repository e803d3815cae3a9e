// SPDX-License-Identifier: Apache-2.0
#pragma once
// A frame in which near things hide far ones.
//
// The effect gathers or scatters the light of its depth layers without an order. Here the picture
// is cut into slabs of depth; each is continued behind what hides it, blurred alone by the effect,
// and laid over the farther ones.

#include <functional>
#include <vector>

#include "headless/Effect.h"
#include "occlusion/Bounds.h"
#include "occlusion/SlabScene.h"

namespace occlusion {

struct Options {
    int slabs = 0;                // 1 to kMostSlabs; 0: as many as gain something
    std::vector<float> bounds{};  // of nearness, ascending, inside 0..1; instead of `slabs`
};

// What became of a slab.
struct SlabReport {
    float far = 0.0F;  // the bounds of its nearness
    float near = 1.0F;
    RadiusSpan radii;
    int layers = 0;  // depth layers it was blurred with; 0 if it covers no pixel
};

struct Result {
    headless::FrameResult frame;
    std::vector<SlabReport> slabs;  // from far to near; a single one is the effect's own frame
};

// Renders `request`, whose input is in float, with `parameters`, which hold a depth map as large as
// the input, and the focus in Focal Distance; the map is given up when it has been read. Throws
// what Effect::renderFrame throws, and std::invalid_argument without such an input or map, or for
// other bounds.
Result render(headless::Host& host, headless::Effect& effect, const headless::FrameRequest& request,
              headless::ParameterSet parameters, const Options& options);

}  // namespace occlusion
