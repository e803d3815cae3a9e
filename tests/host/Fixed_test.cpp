// SPDX-License-Identifier: Apache-2.0
#include "host/Fixed.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace {

TEST(Fixed, RoundsHalvesAwayFromZeroAndClampsWhatDoesNotFit) {
    const std::pair<double, PF_Fixed> cases[] = {{0.5 / 65536, 1},      {-0.5 / 65536, -1},
                                                 {0.49 / 65536, 0},     {-32768.0, INT32_MIN},
                                                 {HUGE_VAL, INT32_MAX}, {NAN, INT32_MIN}};
    for (const auto& [value, expected] : cases) EXPECT_EQ(AEO::toFixed(value), expected) << value;
    EXPECT_EQ(AEO::fromFixed(-64880), -0.989990234375);
    EXPECT_EQ(AEO::toFixedRadius(-3.0), 1);
    EXPECT_EQ(AEO::toFixedRadius(1000.0), 8388608);
    EXPECT_EQ(AEO::wrappingArea(65536, 32768), INT32_MIN);
    EXPECT_EQ(AEO::wrappingArea(8388608, 8388608), 0);
}

}  // namespace
