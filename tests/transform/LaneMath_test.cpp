// SPDX-License-Identifier: Apache-2.0
#include "transform/LaneMath.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/Noise.h"

namespace {

constexpr std::size_t kLanes = 40;
using Lanes = ET::vecT<double, kLanes>;
using Exact = long double (*)(long double);

// The distance of a result from the correctly rounded value, in units of its last place. Equal
// infinities and two values that are no numbers have none.
double unitsOff(double result, long double exact) {
    const auto rounded = static_cast<double>(exact);
    if (std::isnan(result) || std::isnan(rounded) || std::isinf(result) || std::isinf(rounded)) {
        const bool same = result == rounded || (std::isnan(result) && std::isnan(rounded));
        return same ? 0.0 : HUGE_VAL;
    }
    const double next = std::nextafter(std::fabs(rounded), HUGE_VAL);
    return std::fabs(result - rounded) / (next - std::fabs(rounded));
}

// A number of one of several magnitudes; both functions have their difficult places among them.
double anyNumber(Noise& noise) {
    const double unit = noise.unit();
    switch (static_cast<int>(noise.unit() * 6.0)) {
        case 0:
            return 1500.0 * (unit - 0.5);
        case 1:
            return 4.0 * unit - 2.0;
        case 2:
            return std::ldexp(unit - 0.5, -static_cast<int>(noise.unit() * 70.0));
        case 3:
            return std::ldexp(unit, static_cast<int>(noise.unit() * 1020.0));
        case 4:
            return -std::ldexp(unit, -static_cast<int>(noise.unit() * 60.0));
        default:
            return 0.34657 + 0.1 * unit;  // where the range of the first reduction ends
    }
}

void expectWithinOneUnit(double x, double result, long double exact) {
    ASSERT_LE(unitsOff(result, exact), 1.0) << "at " << x << ": " << result;
}

}  // namespace

TEST(LaneMath, IsWithinOneUnitInTheLastPlace) {
    constexpr std::size_t kPoints = 10'000'000;
    Noise noise;
    for (std::size_t done = 0; done < kPoints; done += kLanes) {
        Lanes x;
        for (std::size_t k = 0; k < kLanes; ++k) x[k] = anyNumber(noise);
        Lanes powers, logarithms;
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < kLanes; ++k) powers[k] = ET::lane::expm1(x[k]);
        ORBEL_INDEPENDENT_LANES
        for (std::size_t k = 0; k < kLanes; ++k) logarithms[k] = ET::lane::log1p(x[k]);
        for (std::size_t k = 0; k < kLanes; ++k) {
            const long double exact = x[k];
            expectWithinOneUnit(x[k], powers[k], std::expm1(exact));
            expectWithinOneUnit(x[k], logarithms[k], std::log1p(exact));
            if (HasFatalFailure()) return;
        }
    }
}

TEST(LaneMath, PowersOfSharesAreExactToSixteenPlaces) {
    Noise noise;
    for (int i = 0; i < 100'000; ++i) {
        const double rest = i % 2 == 0 ? std::ldexp(noise.upTo(4095), -12) : noise.unit();
        const double loss = 1.0 - rest;
        const double exponent = std::ldexp(noise.unit(), static_cast<int>(noise.upTo(24)) - 12);
        const double power = std::pow(1.0 - loss, exponent);
        ASSERT_NEAR(ET::lane::powerOfRest(loss, exponent), power, 4e-16) << rest << "^" << exponent;
    }
    EXPECT_EQ(ET::lane::powerOfRest(1.0, 0.01), 0.0);
    EXPECT_EQ(ET::lane::powerOfRest(0.0, 70.0), 1.0);
}

TEST(LaneMath, HoldsAtTheEdges) {
    const double infinity = HUGE_VAL;
    const double overflow = 0x1.62e42fefa39efp+9;  // the last whose exponential is finite
    for (const double x : {0.0,
                           -0.0,
                           infinity,
                           -infinity,
                           std::nan(""),
                           5e-324,
                           -5e-324,
                           1e-310,
                           0x1p-1022,
                           0x1p-53,
                           -0x1p-53,
                           0x1p-54,
                           overflow,
                           std::nextafter(overflow, infinity),
                           709.0,
                           1e308,
                           std::numeric_limits<double>::max(),
                           -37.42994775023705,
                           -36.7,
                           -745.2,
                           -1e300,
                           -1.0,
                           std::nextafter(-1.0, 0.0),
                           std::nextafter(-1.0, -2.0),
                           -0.5,
                           0x1p53,
                           0x1p54}) {
        expectWithinOneUnit(x, ET::lane::expm1(x), std::expm1(static_cast<long double>(x)));
        expectWithinOneUnit(x, ET::lane::log1p(x), std::log1p(static_cast<long double>(x)));
    }
}
