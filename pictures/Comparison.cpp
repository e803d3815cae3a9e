// SPDX-License-Identifier: Apache-2.0
#include "pictures/Comparison.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "pictures/Errors.h"

namespace pictures {
namespace {

constexpr std::size_t kColours = 3;

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

DifferentPart differenceIn(const Window& window, const Picture& a, const Picture& b) {
    DifferentPart part{.window = window};
    for (int y = window.top; y < window.bottom; ++y) {
        for (int x = window.left; x < window.right; ++x) {
            for (std::size_t c = 0; c < kChannels; ++c) {
                const double apart = distance(pixelAt(a, x, y)[c], pixelAt(b, x, y)[c]);
                part.largest = std::max(part.largest, apart);
                part.mean += apart;
            }
        }
    }
    part.mean /= static_cast<double>(window.width()) * window.height() * kChannels;
    return part;
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

std::vector<DifferentPart> mostDifferent(const Picture& a, const Picture& b, std::size_t count) {
    constexpr int kSide = 64;
    const Window both = enclosing(a.window, b.window);
    std::vector<DifferentPart> parts;
    for (int top = both.top; top < both.bottom; top += kSide) {
        for (int left = both.left; left < both.right; left += kSide) {
            const DifferentPart part = differenceIn(
                {left, top, std::min(left + kSide, both.right), std::min(top + kSide, both.bottom)},
                a, b);
            if (part.largest > 0.0) parts.push_back(part);
        }
    }
    std::ranges::stable_sort(parts, std::greater(), &DifferentPart::mean);
    parts.resize(std::min(parts.size(), count));
    return parts;
}

std::vector<float> differencePixels(const Picture& a, const Picture& b) {
    const Window both = enclosing(a.window, b.window);
    std::vector<float> values;
    for (int y = both.top; y < both.bottom; ++y) {
        for (int x = both.left; x < both.right; ++x) {
            for (std::size_t c = 0; c < kColours; ++c) {
                const double apart = distance(pixelAt(a, x, y)[c], pixelAt(b, x, y)[c]);
                values.push_back(static_cast<float>(apart));
            }
        }
    }
    return values;
}

}  // namespace pictures
