// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/LensRange.h"

#include <algorithm>
#include <limits>
#include <queue>

namespace pictures {
namespace {

constexpr std::size_t kPixelsForAStray = 10000;
constexpr double kStrayBlur = 1.5;  // of the largest blur of the others
constexpr double kRounding = 1.0 + 1e-6;

// The least distance when the `count` nearest pixels are left out.
double nearestWithout(const DepthSource& source, std::size_t count) {
    std::priority_queue<double> nearest;  // the farthest of them on top
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        const double value = source.value(i);
        if (isNothing(value, source.kind)) continue;
        nearest.push(value);
        if (nearest.size() > count + 1) nearest.pop();
    }
    return nearest.top();
}

double largestBlur(const LensView& view, const DistanceSpan& span) {
    return std::max(view.radius(span.nearest), view.radius(span.farthest));
}

// Leaves out the pixels nearer than the focus with a blur beyond `largest`.
LensRange withoutStrays(const DepthSource& source, const LensView& view, const LensRange& all,
                        double largest) {
    LensRange range{{all.span.farthest, all.span.farthest}};
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        const double value = source.value(i);
        if (isNothing(value, source.kind)) continue;
        if (view.radius(value) > largest) {
            ++range.strays;
        } else {
            range.span.nearest = std::min(range.span.nearest, value);
        }
    }
    return range;
}

}  // namespace

LensRange lensRange(const DepthSource& source, const LensView& view) {
    const bool sky = source.range.nothing > 0;
    const LensRange all{
        {source.range.least, sky ? std::numeric_limits<double>::infinity() : source.range.most}};
    const std::size_t count = source.picture.pixelCount() / kPixelsForAStray;
    if (count == 0) return all;
    const DistanceSpan others{nearestWithout(source, count), all.span.farthest};
    const double largest = kStrayBlur * largestBlur(view, others);
    return largestBlur(view, all.span) > largest ? withoutStrays(source, view, all, largest) : all;
}

std::size_t countBeyond(const DepthSource& source, const DistanceSpan& span, const LensBlur& blur) {
    const double near = blur.near() / kRounding;
    const double far = blur.far() * kRounding;
    std::size_t count = 0;
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        const double value = source.value(i);
        const double distance =
            isNothing(value, source.kind) ? std::numeric_limits<double>::infinity() : value;
        if (distance >= span.nearest && (distance < near || distance > far)) ++count;
    }
    return count;
}

}  // namespace pictures
