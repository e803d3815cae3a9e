// SPDX-License-Identifier: Apache-2.0
#include "transform/SetUpMath.h"

#include <gtest/gtest.h>

#include "support/Noise.h"

namespace {

// Within half a unit in the last place, and a little for the rounding of the exact value itself.
void expectRounded(double x, double result, long double exact) {
    const double next = std::nextafter(std::fabs(result), HUGE_VAL);
    const double unit = next - std::fabs(result);
    ASSERT_LE(std::fabs(static_cast<double>((result - exact) / unit)), 0.501) << "at " << x;
}

}  // namespace

TEST(SetUpMath, RoundsOnce) {
    Noise noise;
    for (int i = 0; i < 300'000; ++i) {
        // The twiddles' eighths of a turn, aperture rotations of hundreds of turns, small angles.
        const double scale = i % 3 == 0 ? 4.0 : i % 3 == 1 ? 3000.0 : std::ldexp(1.0, -i % 40);
        const double x = (noise.unit() - 0.5) * scale;
        const long double exact = x;
        expectRounded(x, set_up::sin(x), std::sin(exact));
        expectRounded(x, set_up::cos(x), std::cos(exact));
        expectRounded(x, set_up::tan(x), std::tan(exact));
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(set_up::sin(0.0), 0.0);
    EXPECT_EQ(set_up::cos(0.0), 1.0);
    EXPECT_EQ(set_up::tan(0.0), 0.0);
}
