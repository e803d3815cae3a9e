// SPDX-License-Identifier: Apache-2.0
#pragma once
// Where to cut a picture's depth into slabs.

#include <span>
#include <vector>

#include "occlusion/BlurScale.h"
#include "occlusion/Depths.h"

namespace occlusion {

constexpr int kMostSlabs = 8;

// A scene in one frame.
struct View {
    Depths depths;
    BlurScale scale;
};

// Of `parameters` that suit render() at `time`, for a picture of this size. Throws as readDepths.
View viewOf(const headless::ParameterSet& parameters, int width, int height, double downsample,
            A_Time time = {0, 1});

// The bounds that suit all views together: `slabs` - 1, or as many as gain something for 0 slabs.
std::vector<float> chooseBounds(std::span<const View> views, int slabs);

// How outlines and surfaces lie in maps, by steps of nearness.
class DepthCensus {
public:
    explicit DepthCensus(std::span<const View> views);

    // Bounds for at most `most` slabs, ascending: such that they separate the two sides of as many
    // outlines as possible and cut few surfaces. Each slab has some of the pixels. Fewer where
    // another bound would hardly separate anything that the others don't; none if there is no
    // outline.
    std::vector<float> choose(int most) const;
    // Bounds for `slabs` slabs as far as they can be found, even where they gain little.
    std::vector<float> chooseExactly(int slabs) const;

private:
    struct Choice {
        double gain = 0.0;
        std::vector<int> steps;
    };
    std::vector<Choice> bestChoices(int most) const;
    void findRange(std::span<const View> views);
    void count(const View& view);
    void count(float a, float b, const BlurScale& scale);
    int stepOf(float nearness) const;
    double gained(int previous, int bound) const;
    bool populated(int from, int to) const;
    double crowd(int bound) const;
    double middleOfGap(int bound) const;
    std::vector<float> boundsAt(const std::vector<int>& steps) const;

    float least_ = 1.0F;  // of the map's nearness
    float most_ = 0.0F;
    // Outlines by the steps of their farther and their nearer side, and later the sum of those with
    // at most the one and at least the other.
    std::vector<double> outlines_;
    double allOutlines_ = 0.0;
    std::vector<double> cuts_;    // pairs of neighbours on a surface that a bound at a step parts
    std::vector<double> pixels_;  // nearer than a step
};

}  // namespace occlusion
