// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthFocus.h"

#include <algorithm>
#include <vector>

namespace pictures {
namespace {

constexpr int kReach = 2;  // of the window around a pixel
constexpr double kLeastFocalDistance = -1.0;
constexpr double kMostFocalDistance = 2.0;

}  // namespace

double focalDistance(double position, bool inverted) {
    return std::clamp(inverted ? 1.0 - position : position, kLeastFocalDistance,
                      kMostFocalDistance);
}

DepthSample sampleDepth(const DepthSource& source, const DepthCurve& curve, const Size& image,
                        MapPlacement placement, int x, int y) {
    std::vector<DepthSample> samples;
    for (int row = std::max(y - kReach, 0); row <= std::min(y + kReach, image.height - 1); ++row) {
        for (int column = std::max(x - kReach, 0); column <= std::min(x + kReach, image.width - 1);
             ++column) {
            const double value =
                source.value(mapPixel(image, source.picture, placement, column, row));
            samples.push_back({value, static_cast<double>(curve(value))});
        }
    }
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(
        samples.begin(), middle, samples.end(),
        [](const DepthSample& a, const DepthSample& b) { return a.position < b.position; });
    return *middle;
}

}  // namespace pictures
