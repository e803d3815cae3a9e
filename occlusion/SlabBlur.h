// SPDX-License-Identifier: Apache-2.0
#pragma once
// How the effect blurs one slab.

#include "headless/Effect.h"
#include "headless/Parameters.h"
#include "occlusion/SlabScene.h"

namespace occlusion {

// The controls, input and map with which each of a slab's pixels gets its own blur: the radius and
// the number of depth layers that come closest to the slab's radii.
class SlabBlur {
public:
    // `parameters` are those of the whole picture.
    SlabBlur(const headless::ParameterSet& parameters, SlabScene slab, double downsample,
             int threads);

    // 1 if all of the slab has one radius.
    int layers() const { return layers_; }
    // The request for what the slab and its blur cover of `rect`, pixels at the downsample;
    // otherwise as `frame`. Valid as long as this object.
    headless::FrameRequest request(const headless::FrameRequest& frame, const PF_LRect& rect) const;
    // Lets the slab cover all of the picture, without light: the same request then shows how much
    // of each blur lies inside the picture.
    void fill();

private:
    void setMap(int threads);
    PF_LRect reach() const;

    headless::ParameterSet parameters_;
    SlabScene slab_;
    double downsample_;
    int layers_ = 1;
    double fullRadius_ = 0.0;  // in pixels of the render
};

}  // namespace occlusion
