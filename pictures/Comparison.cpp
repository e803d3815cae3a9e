// SPDX-License-Identifier: Apache-2.0
#include "pictures/Comparison.h"

#include <cmath>
#include <limits>

#include "pictures/Errors.h"

namespace pictures {
namespace {

double distance(float a, float b) {
    if (a == b || (std::isnan(a) && std::isnan(b))) return 0.0;
    if (!std::isfinite(a) || !std::isfinite(b)) return std::numeric_limits<double>::infinity();
    return std::fabs(static_cast<double>(a) - static_cast<double>(b));
}

// The pixel at (x, y) in the file's coordinates; zeros outside.
const float* pixelAt(const Picture& picture, int x, int y) {
    static constexpr float kNothing[kChannels] = {};
    const Window& window = picture.window;
    if (x < window.left || x >= window.right || y < window.top || y >= window.bottom) {
        return kNothing;
    }
    return picture.pixel(static_cast<std::size_t>(y - window.top) *
                             static_cast<std::size_t>(window.width()) +
                         static_cast<std::size_t>(x - window.left));
}

void accumulate(Difference& difference, double& sum, double apart, int x, int y, int channel) {
    sum += apart;
    if (!(apart > difference.largest)) return;
    difference = {apart, 0.0, x, y, channel};
}

}  // namespace

Difference comparePictures(const Picture& a, const Picture& b) {
    if (a.display.width() != b.display.width() || a.display.height() != b.display.height()) {
        throw Failure("the images differ in size: " + a.name + " has " +
                      std::to_string(a.display.width()) + "x" + std::to_string(a.display.height()) +
                      " pixels, " + b.name + " " + std::to_string(b.display.width()) + "x" +
                      std::to_string(b.display.height()));
    }
    Difference difference;
    double sum = 0.0;
    const Window both = enclosing(a.window, b.window);
    for (int y = both.top; y < both.bottom; ++y) {
        for (int x = both.left; x < both.right; ++x) {
            const float* first = pixelAt(a, x, y);
            const float* second = pixelAt(b, x, y);
            for (int c = 0; c < static_cast<int>(kChannels); ++c) {
                accumulate(difference, sum, distance(first[c], second[c]), x, y, c);
            }
        }
    }
    difference.mean = sum / (static_cast<double>(both.width()) * both.height() * kChannels);
    return difference;
}

}  // namespace pictures
