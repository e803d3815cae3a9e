// SPDX-License-Identifier: Apache-2.0
#pragma once
// Sine, cosine and tangent for what is computed once a frame: tables, and parameters in render
// units.
//
// The platforms' libraries round these functions differently in the last place. Here they are
// computed with twice the digits and rounded once, by plain arithmetic in a fixed order: the result
// is the nearest double, but for a few arguments in 2^40, and the same on every platform.

#include <array>
#include <cmath>
#include <cstddef>

#include "transform/ExactSum.h"

namespace set_up {

// A number as the unevaluated sum of two doubles, the second at most half a unit in the last place
// of the first. The arithmetic is that of Dekker, "A floating-point technique for extending the
// available precision", 1971.
struct TwoDoubles {
    double high = 0.0;
    double low = 0.0;
};

// The exact sum of two doubles; |a| >= |b|, or a is 0.
constexpr TwoDoubles quickSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

// The exact product, by halves of 26 digits.
constexpr TwoDoubles exactProduct(double a, double b) {
    constexpr double kSplit = 134217729.0;  // 2^27 + 1
    const double bigA = kSplit * a;
    const double highA = bigA - (bigA - a);
    const double lowA = a - highA;
    const double bigB = kSplit * b;
    const double highB = bigB - (bigB - b);
    const double lowB = b - highB;
    const double product = a * b;
    return {product, ((highA * highB - product) + highA * lowB + lowA * highB) + lowA * lowB};
}

constexpr TwoDoubles operator+(const TwoDoubles& a, const TwoDoubles& b) {
    const ExactSum sum = exactSum(a.high, b.high);
    return quickSum(sum.high, sum.low + (a.low + b.low));
}

constexpr TwoDoubles operator*(const TwoDoubles& a, const TwoDoubles& b) {
    const TwoDoubles product = exactProduct(a.high, b.high);
    return quickSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

constexpr TwoDoubles operator-(const TwoDoubles& a) {
    return {-a.high, -a.low};
}

constexpr TwoDoubles operator/(const TwoDoubles& a, const TwoDoubles& b) {
    const double first = a.high / b.high;
    const TwoDoubles rest = a + -(b * TwoDoubles{first, 0.0});
    return quickSum(first, rest.high / b.high);
}

// 1 / n!, for n below the table's size.
inline constexpr std::array<TwoDoubles, 30> kInverseFactorials = [] {
    std::array<TwoDoubles, 30> table{};
    table[0] = {1.0, 0.0};
    for (std::size_t n = 1; n < table.size(); ++n) {
        table[n] = table[n - 1] / TwoDoubles{static_cast<double>(n), 0.0};
    }
    return table;
}();

struct SineCosine {
    TwoDoubles sine;
    TwoDoubles cosine;
};

// Taylor's series, for |r| <= pi / 4.
constexpr SineCosine series(const TwoDoubles& r) {
    const TwoDoubles square = -(r * r);
    TwoDoubles sine = kInverseFactorials[29];
    TwoDoubles cosine = kInverseFactorials[28];
    for (std::size_t n = 28; n >= 2; n -= 2) {
        sine = sine * square + kInverseFactorials[n - 1];
        cosine = cosine * square + kInverseFactorials[n - 2];
    }
    return {sine * r, cosine};
}

// Of an angle in radians, of at most some millions.
inline SineCosine sineAndCosine(double angle) {
    // pi / 2 in three parts.
    constexpr double kFirst = 0x1.921fb54442d18p+0;
    constexpr double kSecond = 0x1.1a62633145c07p-54;
    constexpr double kThird = -0x1.f1976b7ed8fbcp-110;
    const double quarters = std::floor(angle / kFirst + 0.5);
    const TwoDoubles r = TwoDoubles{angle, 0.0} + -exactProduct(quarters, kFirst) +
                         -exactProduct(quarters, kSecond) + TwoDoubles{-quarters * kThird, 0.0};
    const SineCosine base = series(r);
    const double turn = quarters - 4.0 * std::floor(quarters / 4.0);
    if (turn == 1.0) return {base.cosine, -base.sine};
    if (turn == 2.0) return {-base.sine, -base.cosine};
    if (turn == 3.0) return {-base.cosine, base.sine};
    return base;
}

inline double sin(double angle) {
    return sineAndCosine(angle).sine.high;
}

inline double cos(double angle) {
    return sineAndCosine(angle).cosine.high;
}

inline double tan(double angle) {
    const SineCosine of = sineAndCosine(angle);
    return (of.sine / of.cosine).high;
}

}  // namespace set_up
