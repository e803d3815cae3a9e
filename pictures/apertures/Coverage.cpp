// SPDX-License-Identifier: Apache-2.0
#include "pictures/apertures/Coverage.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace apertures {
namespace {

constexpr double kValueSteps = 16777216.0;  // 2^24: all are floats

// The mean width of the part left of `x` in a strip from `left` to `right` whose edge runs from one
// to the other: the integral of a linear ramp.
double widthBefore(double x, double left, double right) {
    if (x <= left) return 0.0;
    if (x >= right) return x - 0.5 * (left + right);
    return (x - left) * (x - left) / (2.0 * (right - left));
}

}  // namespace

Coverage::Coverage(int size, const std::atomic<bool>& cancel)
    : size_(size),
      cancel_(cancel),
      steps_(static_cast<std::size_t>(size) * (static_cast<std::size_t>(size) + 2)) {}

// A side of a polygon with n corners is off by r (1 - cos(pi/n)), nearly r pi^2 / (2 n^2).
int Coverage::cornersOfCircle(double radius) const {
    constexpr double kLargestError = 1.0 / 4096.0;
    constexpr double kPi = 3.141592653589793;
    const double pixels = radius * 0.5 * size_;
    return 4 * static_cast<int>(std::ceil(kPi * std::sqrt(pixels / (2.0 * kLargestError)) / 4.0));
}

void Coverage::add(const Outline& outline, double weight) {
    if (cancel_) return;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        addEdge(outline[i], outline[i + 1 < outline.size() ? i + 1 : 0], weight);
    }
}

double Coverage::toPixels(double position) const {
    const double half = 0.5 * size_;
    return std::clamp(half + position * half, 0.0, static_cast<double>(size_));
}

// An edge upwards covers what lies to its right, an edge downwards uncovers it.
void Coverage::addEdge(Point from, Point to, double weight) {
    Point top{toPixels(from.x), toPixels(from.y)};
    Point bottom{toPixels(to.x), toPixels(to.y)};
    if (top.y == bottom.y) return;
    double sign = -weight;
    if (top.y > bottom.y) {
        std::swap(top, bottom);
        sign = weight;
    }
    const double slope = (bottom.x - top.x) / (bottom.y - top.y);
    const int last = static_cast<int>(std::ceil(bottom.y));
    for (int row = static_cast<int>(top.y); row < last; ++row) {
        const double above = std::max(top.y, static_cast<double>(row));
        const double below = std::min(bottom.y, row + 1.0);
        const double first = top.x + (above - top.y) * slope;
        const double second = below == bottom.y ? bottom.x : top.x + (below - top.y) * slope;
        addPiece(row, std::min(first, second), std::max(first, second), sign * (below - above));
    }
}

// Covers what lies to the right of an edge within one row; `weight` includes its height.
void Coverage::addPiece(int row, double left, double right, double weight) {
    double* steps =
        steps_.data() + static_cast<std::size_t>(row) * (static_cast<std::size_t>(size_) + 2);
    double width = 0.0;
    double covered = 0.0;  // of the pixel before
    for (int x = static_cast<int>(left); covered < 1.0 && x < size_ + 2; ++x) {
        const double wider = widthBefore(x + 1.0, left, right);
        const double share = x >= right ? 1.0 : wider - width;
        steps[x] += weight * (share - covered);
        covered = share;
        width = wider;
    }
}

std::vector<float> Coverage::values() const {
    const auto size = static_cast<std::size_t>(size_);
    std::vector<float> pixels;
    pixels.reserve(size * size);
    for (std::size_t y = 0; y < size; ++y) {
        double sum = 0.0;
        for (std::size_t x = 0; x < size; ++x) {
            sum += steps_[y * (size + 2) + x];
            const double value = std::round(std::clamp(sum, 0.0, 1.0) * kValueSteps) / kValueSteps;
            pixels.push_back(static_cast<float>(value));
        }
    }
    return pixels;
}

}  // namespace apertures
