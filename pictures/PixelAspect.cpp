// SPDX-License-Identifier: Apache-2.0
#include "pictures/PixelAspect.h"

#include <cmath>

#include "pictures/Text.h"

namespace pictures {
namespace {

constexpr double kSquareTolerance = 0.01;
constexpr int kLargestDenominator = 100;
constexpr double kLargestAspect = 1000.0;

// The ratio with the smallest denominator within 1/10000 of `value`, otherwise the nearest.
PF_RationalScale nearestRatio(double value) {
    PF_RationalScale best{1, 1};
    double bestError = HUGE_VAL;
    for (int den = 1; den <= kLargestDenominator && bestError > 1e-4; ++den) {
        const double num = std::round(value * den);
        const double error = std::fabs(num / den - value) / value;
        if (error >= bestError) continue;
        bestError = error;
        best = {static_cast<A_long>(num), static_cast<A_u_long>(den)};
    }
    return best;
}

}  // namespace

PF_RationalScale aspectRatio(double aspect, const std::string& picture, Messages& messages) {
    if (std::fabs(aspect - 1.0) <= kSquareTolerance) return {1, 1};
    if (aspect < 1.0) {
        messages.warn("the pixels of " + picture + " are narrower than high (pixel aspect " +
                      numberText(aspect) +
                      "), which the effect doesn't support: it is blurred as if they were square; "
                      "--pixel-aspect N/D overrides this");
        return {1, 1};
    }
    return nearestRatio(std::fmin(aspect, kLargestAspect));
}

}  // namespace pictures
