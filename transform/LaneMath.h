// SPDX-License-Identifier: Apache-2.0
#pragma once
// exp(x) - 1 and log(1 + x), the forms that keep their digits near zero, for loops over lanes.
//
// Within 1 unit in the last place of the correctly rounded value over the whole range of doubles.
// The same bits on every platform: plain arithmetic in a fixed order, without fused operations,
// tables or calls of the platform's library. No step branches on a lane's value, so that the
// compiler computes several lanes in one instruction; choices are made by selecting one of two
// computed values.
//
// Both polynomials interpolate at the nodes of Chebyshev's polynomials. They are evaluated in pairs
// of terms (Estrin's scheme): without fused operations, one term after the other would wait.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "transform/ExactSum.h"
#include "transform/VectorElements.h"

namespace ET {

namespace lane {

// ln 2 in two parts: multiples of the first, up to 2^21, are exact.
constexpr double kLn2High = 0x1.62e42fee00000p-1;
constexpr double kLn2Low = 0x1.a39ef35793c76p-33;

// exp(x) - 1 = 2^k (exp(r) - 1) + (2^k - 1), |r| <= ln(2) / 2. Computed at half its size, since
// 2^1024 is out of range.
ORBEL_LANE_INLINE constexpr double expm1(double value) {
    constexpr double kGreatest = 710.0;  // everything above overflows
    constexpr double kLeast = -40.0;     // everything below is -1
    constexpr double kRound = 0x1.8p52;  // added, it leaves no bits for a fraction
    constexpr std::uint64_t kHalf = std::uint64_t{1022} << 52;
    const double capped = value > kGreatest ? kGreatest : value;
    const double x = capped < kLeast ? kLeast : capped;  // NaN stays

    const double rounded = x * 0x1.71547652b82fep0 + kRound;
    const double k = rounded - kRound;
    const double reduced = x - k * kLn2High;  // exact
    const double tail = k * kLn2Low;
    const double r = reduced - tail;
    const double lost = (reduced - r) - tail;  // of r, by rounding

    const double r2 = r * r;
    const double r4 = r2 * r2;
    const double low = (0x1.5555555555556p-3 + r * 0x1.5555555555555p-5) +
                       r2 * (0x1.11111111109b3p-7 + r * 0x1.6c16c16c167e1p-10);
    const double middle = (0x1.a01a01a7c41d5p-13 + r * 0x1.a01a01a47b054p-16) +
                          r2 * (0x1.71de0dae63bb3p-19 + r * 0x1.27e4e1f48534fp-22);
    const double high = 0x1.af38a9b0ec855p-26 + r * 0x1.1f66df7fca49fp-29;
    // exp(r) - 1 - r, by its square term, which needs the most digits, and the others.
    const double others = r2 * r * (low + r4 * (middle + r4 * high));
    const double curved = 0.5 * r2 + (others + (lost + lost * r));

    const auto scale = std::bit_cast<double>((std::bit_cast<std::uint64_t>(rounded) << 52) + kHalf);
    const double offset = scale - 0.5;
    const double line = scale * r;  // less than `offset`, but where that is 0
    const double sum = offset + line;
    const double remainder = line - (sum - offset);
    return 2.0 * (sum + (remainder + scale * curved));
}

// log(1 + x) = k ln 2 + log(1 + f), sqrt(1/2) <= 1 + f < sqrt(2). With s = f / (2 + f), log(1 + f)
// is 2 s + s P(s^2) = f - f^2 / 2 + s (f^2 / 2 + P(s^2)).
ORBEL_LANE_INLINE constexpr double log1p(double x) {
    constexpr std::uint64_t kOne = std::uint64_t{1023} << 52;
    constexpr auto kRootHalf = std::bit_cast<std::uint64_t>(0x1.6a09e667f3bcdp-1);
    constexpr double kIntegerBase = 0x1p52;  // from here on a double's bits count integers

    const ExactSum sum = exactSum(1.0, x);
    const auto bits = std::bit_cast<std::uint64_t>(sum.high);
    const std::uint64_t biased = (bits - kRootHalf + kOne) >> 52;
    const double k = std::bit_cast<double>(biased + std::bit_cast<std::uint64_t>(kIntegerBase)) -
                     (kIntegerBase + 1023.0);
    const double f = std::bit_cast<double>(bits - (biased << 52) + kOne) - 1.0;

    const double s = f / (2.0 + f);
    const double z = s * s;
    const double z2 = z * z;
    const double low = (0x1.5555555555555p-1 + z * 0x1.9999999999a39p-2) +
                       z2 * (0x1.2492492476a1ap-2 + z * 0x1.c71c7201a55d7p-3);
    const double high = (0x1.745cf8e4bba1bp-3 + z * 0x1.3b1c3c1c81c8fp-3) +
                        z2 * (0x1.0fbde0f4ad17bp-3 + z * 0x1.0c0aff044a970p-3);
    const double square = 0.5 * f * f;
    const double curved = s * (square + z * (low + z2 * z2 * high)) - square;

    const ExactSum line = exactSum(k * kLn2High, f);
    const double rounded = sum.low / sum.high;  // of the sum 1 + x
    const double result = line.high + (line.low + (curved + (k * kLn2Low + rounded)));
    const double infinity = std::numeric_limits<double>::infinity();
    const double above = x < infinity ? result : x;  // NaN too
    const double pole = x == -1.0 ? -infinity : above;
    return x < -1.0 ? std::numeric_limits<double>::quiet_NaN() : pole;
}

// (1 - loss)^exponent for a loss from 0 to 1 and an exponent above 0, within some 1e-16 of
// the exact value: the error is absolute.
ORBEL_LANE_INLINE constexpr double powerOfRest(double loss, double exponent) {
    return expm1(exponent * log1p(-loss)) + 1.0;
}

}  // namespace lane

}  // namespace ET
