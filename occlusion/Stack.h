// SPDX-License-Identifier: Apache-2.0
#pragma once
// Blurred slabs, laid one over the other.

#include <memory>
#include <vector>

#include "headless/World.h"
#include "occlusion/LightCurve.h"

namespace occlusion {

class Stack {
public:
    // For results in `rect`, in pixels of the layer at the downsample. Empty so far.
    Stack(const PF_LRect& rect, int threads);

    // Lays straight light in float over what is there; outside `slab` nothing changes. `full` is in
    // the same place, the blur of a slab that covers all of the picture: what it lacks in alpha is
    // outside the picture, for all slabs alike, and shows none of them. Null: it lacks nothing.
    void cover(const headless::World& slab, const headless::World* full);
    // The picture: straight colours in float.
    std::shared_ptr<headless::World> picture(const LightCurve& curve) const;

private:
    float* pixel(int x, int y);
    const float* pixel(int x, int y) const;

    PF_LRect rect_;
    int threads_;
    std::vector<float> light_;  // red, green, blue, alpha; multiplied by alpha
};

}  // namespace occlusion
