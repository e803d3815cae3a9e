// SPDX-License-Identifier: Apache-2.0
#pragma once
// A slow and direct evaluation of a whole frame in space: no blocks, no transform, one sum over the
// kernel for each pixel. Independent of the plug-in's code.

#include <vector>

#include "headless/World.h"

namespace reference {

// A kernel's weights, for offsets -reach to reach on both axes: light at p spreads to p + offset.
struct Kernel {
    int reach = 0;
    std::vector<double> weights;
    double at(int dx, int dy) const {
        return weights[static_cast<std::size_t>((dy + reach) * (2 * reach + 1) + dx + reach)];
    }
};

// The kernels of `layers` depth layers for a shape picture that spans the diameter 2 * radius: its
// alpha, averaged over the box that one kernel pixel covers, normalised to the sum 1. A kernel
// without any weight is a single point.
std::vector<Kernel> kernelsOf(const headless::World& shape, double radius, int layers);

enum class Mode { kNormal = 1, kSplit = 2 };

struct Scene {
    const headless::World* input = nullptr;  // the layer, whole
    std::vector<Kernel> kernels;             // one for each depth layer
    double exposure = 0;
    double threshold = 0;
    bool repeatEdge = true;

    // With two or more kernels: a map of the input's size, its red channel.
    const headless::World* map = nullptr;
    Mode mode = Mode::kNormal;
    bool invert = false;
    double focalDistance = 0;
    double profile = 0;
    double edgeLeak = 0;  // the control, 0 to 1
    double edgeThreshold = 0;
};

struct Pixel {
    double alpha, red, green, blue;
};

// The pixels of `rect` of the layer's plane, row by row.
std::vector<Pixel> render(const Scene& scene, const PF_LRect& rect);

}  // namespace reference
