// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/LensRange.h"

#include <algorithm>
#include <limits>
#include <queue>

namespace pictures {
namespace {

constexpr std::size_t kPixelsForAStray = 10000;
constexpr double kMostWithoutStrays = 2.0 / 3.0;  // of the blur with them
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

std::size_t countNearer(const DepthSource& source, double distance) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        if (source.value(i) < distance) ++count;
    }
    return count;
}

double largestBlur(const LensView& view, const DistanceSpan& span) {
    return std::max(view.radius(span.nearest), view.radius(span.farthest));
}

}  // namespace

LensRange lensRange(const DepthSource& source, const LensView& view) {
    const bool sky = source.range.nothing > 0;
    LensRange range{{source.range.least,
                     sky ? std::numeric_limits<double>::infinity() : source.range.most}};
    const std::size_t count = source.picture.pixelCount() / kPixelsForAStray;
    if (count == 0) return range;
    const DistanceSpan others{nearestWithout(source, count), range.span.farthest};
    if (largestBlur(view, others) > kMostWithoutStrays * largestBlur(view, range.span)) {
        return range;
    }
    return {others, countNearer(source, others.nearest)};
}

std::size_t countBeyond(const DepthSource& source, const LensView& view, const LensBlur& blur) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        const double value = source.value(i);
        const double distance =
            isNothing(value, source.kind) ? std::numeric_limits<double>::infinity() : value;
        if (view.radius(distance) > blur.reach() * kRounding) ++count;
    }
    return count;
}

}  // namespace pictures
