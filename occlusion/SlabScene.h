// SPDX-License-Identifier: Apache-2.0
#pragma once
// One slab alone, as the effect gets it: what is seen of it, continued behind nearer slabs.

#include <memory>
#include <optional>

#include "headless/World.h"
#include "occlusion/Depths.h"
#include "occlusion/LightCurve.h"
#include "occlusion/Outlines.h"
#include "occlusion/Slabs.h"

namespace occlusion {

// A picture with depth, cut into slabs. Everything must outlive it.
struct Scene {
    const headless::World& picture;  // straight colours in float
    const Depths& depths;
    const BlurScale& scale;
    const LightCurve& curve;
    const Slabs& slabs;
    const Outlines& outlines;
    int threads = 1;
};

// The radii of the blurs in a slab, in pixels of the full resolution.
struct RadiusSpan {
    double least = 0;
    double largest = 0;
};

struct SlabScene {
    // Straight light with the slab's coverage in alpha.
    std::shared_ptr<headless::World> light;
    // The blur's radius of each pixel, also where the slab isn't.
    std::vector<float> radii;
    RadiusSpan span;
    PF_LRect extent{};  // the pixels that the slab covers; empty if there is none
};

SlabScene makeSlab(const Scene& scene, std::size_t slab);

}  // namespace occlusion
