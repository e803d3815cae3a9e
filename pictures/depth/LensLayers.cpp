// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/LensLayers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>

namespace pictures {
namespace {

constexpr double kLeastFullRadius = 0.5;

// The share of a disc that lies between its middle and a line at distance x.
double shareWithin(double x, double radius) {
    const double r2 = radius * radius;
    const double area = x * std::sqrt(std::max(r2 - x * x, 0.0)) + r2 * std::asin(x / radius);
    return area / (std::numbers::pi * r2);
}

double lensMoment(double radius) {
    return radius * radius / 2.0;
}

}  // namespace

double discMoment(double radius) {
    double sum = 0.0;
    for (double column = 1.0; column - 0.5 < radius; column += 1.0) {
        const double share =
            shareWithin(std::min(column + 0.5, radius), radius) - shareWithin(column - 0.5, radius);
        sum += column * column * share;
    }
    return 4.0 * sum;  // columns on both sides, and as much for the rows
}

LensLayers::LensLayers(int count, double fullRadius) : step_(fullRadius / (count - 1)) {
    for (int layer = 0; layer < count; ++layer) {
        moments_.push_back(discMoment(step_ * (count - 1 - layer)));
    }
}

double LensLayers::distanceFromFocus(double radius) const {
    const double wanted = lensMoment(radius);
    if (!(wanted > 0.0)) return 0.0;
    // The first layer that is sharper than wanted, and the one before it.
    const auto sharper = std::partition_point(moments_.begin(), moments_.end(),
                                              [&](double moment) { return moment >= wanted; });
    const auto index = static_cast<double>(sharper - moments_.begin());
    const double place = sharper == moments_.begin()
                             ? 0.5
                             : index + 0.5 - (wanted - *sharper) / (*std::prev(sharper) - *sharper);
    return 1.0 - place / static_cast<double>(moments_.size());
}

double LensLayers::radiusAt(double distanceFromFocus) const {
    const double last = static_cast<double>(moments_.size()) - 1.0;
    const double place = std::clamp((1.0 - distanceFromFocus) * (last + 1.0) - 0.5, 0.0, last);
    const double floored = std::min(std::floor(place), last - 1.0);
    const auto layer = static_cast<std::size_t>(floored);
    return std::sqrt(2.0 * std::lerp(moments_[layer], moments_[layer + 1], place - floored));
}

double LensLayers::largestRadius() const {
    return std::sqrt(2.0 * moments_.front());
}

double LensLayers::fullRadiusFor(double radius) {
    double low = kLeastFullRadius;
    double high = radius + 1.0;  // a disc of one pixel more has the larger moment at any size
    for (int halvings = 0; halvings < 60 && low < high; ++halvings) {
        const double middle = (low + high) / 2.0;
        (discMoment(middle) < lensMoment(radius) ? low : high) = middle;
    }
    return low;
}

}  // namespace pictures
