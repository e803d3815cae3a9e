// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Bounds.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace occlusion {
namespace {

// A bound at step s parts the steps below s from s and those above it.
constexpr int kSteps = 192;
constexpr double kLeastPixels = 0.0005;  // of all, in a slab
// What a bound has to gain beside the best choice with fewer, as part of all outlines.
constexpr double kLeastGain = 0.02;
// The loss for a pair of neighbours on a surface that is cut, beside an outline of large blurs.
constexpr double kCutLoss = 0.15;
// The loss for a pixel that isn't clearly in one slab.
constexpr double kCrowdLoss = 0.01;
constexpr int kCrowdSteps = 4;
constexpr double kFewPixels = 1e-5;    // of all
constexpr double kStrayPixels = 1e-4;  // of all, at each end
constexpr int kRangeSteps = 1 << 16;
// Outlines count by how much the blurs of their sides differ, up to so many pixels of radius.
constexpr double kFullStep = 12.0;

std::size_t index(int farther, int nearer) {
    return static_cast<std::size_t>(farther) * kSteps + static_cast<std::size_t>(nearer);
}

}  // namespace

View viewOf(const headless::ParameterSet& parameters, int width, int height, double downsample,
            A_Time time) {
    return {readDepths(parameters, width, height, time), BlurScale(parameters, downsample, time)};
}

std::vector<float> chooseBounds(std::span<const View> views, int slabs) {
    if (slabs == 1) return {};
    const DepthCensus census(views);
    return slabs == 0 ? census.choose(kMostSlabs) : census.chooseExactly(slabs);
}

DepthCensus::DepthCensus(std::span<const View> views)
    : outlines_(static_cast<std::size_t>(kSteps) * kSteps, 0.0),
      cuts_(kSteps + 1, 0.0),
      pixels_(kSteps + 1, 0.0) {
    findRange(views);
    for (const View& view : views) count(view);
    for (std::size_t s = kSteps; s-- > 0;) pixels_[s] += pixels_[s + 1];
    for (std::size_t s = 1; s <= kSteps; ++s) cuts_[s] += cuts_[s - 1];
    for (int farther = 0; farther < kSteps; ++farther) {
        for (int nearer = kSteps; nearer-- > 0;) {
            double& sum = outlines_[index(farther, nearer)];
            allOutlines_ += sum;
            if (farther > 0) sum += outlines_[index(farther - 1, nearer)];
            if (nearer + 1 < kSteps) sum += outlines_[index(farther, nearer + 1)];
            if (farther > 0 && nearer + 1 < kSteps) {
                sum -= outlines_[index(farther - 1, nearer + 1)];
            }
        }
    }
}

// The range of nearness without the few pixels at each end that would coarsen the steps of all
// others.
void DepthCensus::findRange(std::span<const View> views) {
    std::vector<std::size_t> pixels(kRangeSteps + 1, 0);
    std::size_t all = 0;
    for (const View& view : views) {
        for (const float nearness : view.depths.nearness) {
            ++pixels[static_cast<std::size_t>(std::clamp(nearness, 0.0F, 1.0F) * kRangeSteps)];
        }
        all += view.depths.nearness.size();
    }
    const auto few = static_cast<std::size_t>(kStrayPixels * static_cast<double>(all)) + 1;
    const auto atEnd = [few](auto first, auto last) {
        std::size_t count = 0;
        return std::find_if(first, last, [&](std::size_t here) { return (count += here) > few; }) -
               first;
    };
    least_ = static_cast<float>(atEnd(pixels.begin(), pixels.end())) / kRangeSteps;
    most_ = 1.0F - static_cast<float>(atEnd(pixels.rbegin(), pixels.rend())) / kRangeSteps;
}

void DepthCensus::count(const View& view) {
    const auto& [depths, scale] = view;
    for (int y = 0; y < depths.height; ++y) {
        for (int x = 0; x < depths.width; ++x) {
            const float here = depths.nearness[depths.at(x, y)];
            pixels_[static_cast<std::size_t>(stepOf(here))] += 1.0;
            if (x + 1 < depths.width) count(here, depths.nearness[depths.at(x + 1, y)], scale);
            if (y + 1 < depths.height) count(here, depths.nearness[depths.at(x, y + 1)], scale);
        }
    }
}

int DepthCensus::stepOf(float nearness) const {
    const float range = std::max(most_ - least_, 1e-6F);
    return std::clamp(static_cast<int>((nearness - least_) / range * kSteps), 0, kSteps - 1);
}

// Two neighbouring pixels.
void DepthCensus::count(float a, float b, const BlurScale& scale) {
    const int farther = stepOf(std::min(a, b));
    const int nearer = stepOf(std::max(a, b));
    if (farther == nearer) return;
    if (isOutline(scale, a, b)) {
        const double step =
            std::fabs(static_cast<double>(scale.signedRadius(a) - scale.signedRadius(b)));
        outlines_[index(farther, nearer)] += std::min(step / kFullStep, 1.0);
    } else {
        cuts_[static_cast<std::size_t>(farther) + 1] += 1.0;
        cuts_[static_cast<std::size_t>(nearer) + 1] -= 1.0;
    }
}

// What a bound separates that the one before it doesn't, 0 for none, without what it cuts.
double DepthCensus::gained(int previous, int bound) const {
    double separated = outlines_[index(bound - 1, bound)];
    if (previous > 0) separated -= outlines_[index(previous - 1, bound)];
    return separated - kCutLoss * cuts_[static_cast<std::size_t>(bound)] -
           kCrowdLoss * crowd(bound);
}

// The pixels in the steps around a bound, which would be in both slabs.
double DepthCensus::crowd(int bound) const {
    const int from = std::max(bound - kCrowdSteps, 0);
    const int to = std::min(bound + kCrowdSteps, kSteps);
    return pixels_[static_cast<std::size_t>(from)] - pixels_[static_cast<std::size_t>(to)];
}

// Where no pixels are around a bound, any place there separates as much; the middle leaves most
// room to both sides.
double DepthCensus::middleOfGap(int bound) const {
    const double few = kFewPixels * pixels_[0];
    const auto pixels = [&](int step) {
        return pixels_[static_cast<std::size_t>(step)] -
               pixels_[static_cast<std::size_t>(step) + 1];
    };
    int from = bound;
    int to = bound;
    while (from > 0 && pixels(from - 1) <= few) --from;
    while (to < kSteps && pixels(to) <= few) ++to;
    return (from + to) / 2.0;
}

bool DepthCensus::populated(int from, int to) const {
    const double here =
        pixels_[static_cast<std::size_t>(from)] - pixels_[static_cast<std::size_t>(to)];
    return here >= kLeastPixels * pixels_[0];
}

// The best choice of each number of bounds, by dynamic programming over the last bound.
std::vector<DepthCensus::Choice> DepthCensus::bestChoices(int most) const {
    std::vector<Choice> best(1);
    std::vector<Choice> ending(kSteps);  // with the last bound at a step
    ending[0] = {0.0, {}};
    for (int count = 1; count < most; ++count) {
        std::vector<Choice> longer(kSteps);
        Choice whole;
        for (int bound = 1; bound < kSteps; ++bound) {
            const int first = count == 1 ? 0 : 1;
            const int last = count == 1 ? 0 : bound - 1;
            for (int previous = first; previous <= last; ++previous) {
                const Choice& before = ending[static_cast<std::size_t>(previous)];
                if (count > 1 && before.steps.empty()) continue;
                if (!populated(previous, bound)) continue;
                const double gain = before.gain + gained(previous, bound);
                Choice& here = longer[static_cast<std::size_t>(bound)];
                if (!here.steps.empty() && gain <= here.gain) continue;
                here = {gain, before.steps};
                here.steps.push_back(bound);
            }
            const Choice& here = longer[static_cast<std::size_t>(bound)];
            const bool better = whole.steps.empty() || here.gain > whole.gain;
            if (!here.steps.empty() && populated(bound, kSteps) && better) whole = here;
        }
        if (whole.steps.empty()) break;
        best.push_back(whole);
        ending = std::move(longer);
    }
    return best;
}

std::vector<float> DepthCensus::boundsAt(const std::vector<int>& steps) const {
    std::vector<float> bounds;
    bounds.reserve(steps.size());
    for (const int step : steps) {
        bounds.push_back(least_ +
                         (most_ - least_) * static_cast<float>(middleOfGap(step)) / kSteps);
    }
    return bounds;
}

std::vector<float> DepthCensus::choose(int most) const {
    const std::vector<Choice> best = bestChoices(most);
    std::size_t chosen = 0;
    for (std::size_t i = 1; i < best.size(); ++i) {
        const double least = kLeastGain * static_cast<double>(i - chosen) * allOutlines_;
        if (best[i].gain > best[chosen].gain + least) chosen = i;
    }
    return boundsAt(best[chosen].steps);
}

std::vector<float> DepthCensus::chooseExactly(int slabs) const {
    return boundsAt(bestChoices(slabs).back().steps);
}

}  // namespace occlusion
