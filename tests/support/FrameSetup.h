// SPDX-License-Identifier: Apache-2.0
#pragma once
// A set-up effect and small deterministic test images for whole-frame tests.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "headless/Effect.h"
#include "support/SpatialReference.h"

namespace frame {

// The bundle in a host of its own, set up with a blur of 5.5 pixels in the shape of a picture of
// 12 x 12, so one kernel pixel covers exactly one pixel of the shape.
class BlurEffect {
public:
    explicit BlurEffect(int threads = 2);

    headless::FrameResult render(const headless::FrameRequest& request) {
        return effect.renderFrame(request);
    }
    // Sets the depth map and the number of depth layers.
    void useDepth(std::shared_ptr<const headless::World> map, int layers);
    void set(const std::string& label, double value) { effect.parameters().set(label, value); }
    void setLayer(const std::string& label, std::shared_ptr<const headless::World> layer) {
        effect.parameters().setLayer(effect.parameters().find(label), std::move(layer));
    }

    headless::Host host;
    headless::Effect effect;
    std::shared_ptr<const headless::World> shape;
};

// Noise with a range of alphas and a few bright points; another seed gives another picture.
std::shared_ptr<headless::World> noisePicture(int width, int height, int bits, unsigned seed = 1);

headless::FrameRequest requestFor(std::shared_ptr<const headless::World> input, int bits);

// Compares a result with the direct sum. The tolerance for float is `relative` times the value, or
// times 1 for smaller ones; for the integer formats, which are truncated, it is one step.
void expectPixels(const headless::FrameResult& result, const reference::Scene& scene,
                  double relative = 2e-6);
// Whether two worlds hold the same bits.
bool sameBits(const headless::World& a, const headless::World& b);

}  // namespace frame
