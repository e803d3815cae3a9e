// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/CurveTable.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pictures {
namespace {

constexpr double kTolerance = 5e-8;
constexpr double kSmallValue = 1e-3;

}  // namespace

CurveTable::CurveTable(std::function<double(double)> curve, bool odd)
    : curve_(std::move(curve)), odd_(odd), atZero_(static_cast<float>(curve_(0.0))) {
    cubics_.reserve(kRanges);
    for (std::uint32_t range = 0; range < kRanges; ++range) cubics_.push_back(fit(range));
}

// Interpolates the curve at the range's ends and two points between them (Newton's form with the
// Chebyshev extrema as nodes), and compares the result with the curve between the nodes.
CurveTable::Cubic CurveTable::fit(std::uint32_t range) const {
    constexpr double kLength = kFractionMask + 1.0;
    const double start = std::bit_cast<float>((range + kFirstRange) << kFractionBits);
    const double end = std::bit_cast<float>((range + kFirstRange + 1U) << kFractionBits);
    const auto exact = [&](double t) { return curve_(start + t * (end - start)); };

    constexpr std::array<double, 4> kNodes{0.0, 0.25, 0.75, 1.0};
    std::array<double, 4> d{};
    for (std::size_t i = 0; i < 4; ++i) d[i] = exact(kNodes[i]);
    for (std::size_t order = 1; order < 4; ++order) {
        for (std::size_t i = 3; i >= order; --i) {
            d[i] = (d[i] - d[i - 1]) / (kNodes[i] - kNodes[i - order]);
        }
    }
    const double b1 = d[1] - d[2] * kNodes[1] + d[3] * kNodes[1] * kNodes[2];
    const double b2 = d[2] - d[3] * (kNodes[1] + kNodes[2]);
    bool usable = true;
    for (double t = 0.0625; t < 1.0; t += 0.0625) {
        const double value = exact(t);
        const double error = std::fabs(d[0] + t * (b1 + t * (b2 + t * d[3])) - value);
        if (!(error <= kTolerance * std::max(std::fabs(value), kSmallValue))) usable = false;
    }
    return {d[0], b1 / kLength, b2 / (kLength * kLength),
            static_cast<float>(d[3] / (kLength * kLength * kLength)), usable};
}

float CurveTable::outside(float x) const {
    if (x == 0.0F) return atZero_;
    return static_cast<float>(curve_(static_cast<double>(x)));
}

}  // namespace pictures
