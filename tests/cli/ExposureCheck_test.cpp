// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "cli/render/ExposureCheck.h"

namespace cli {
namespace {

TEST(ExposureCheck, NamesTheLargestThatSuits) {
    EXPECT_FALSE(suitableExposure(35.0, 0.0, 1.0).has_value());
    EXPECT_FALSE(suitableExposure(-30.0, 0.0, 100.0).has_value());
    for (const double largest : {4.5, 64.0, 240.0, 5000.0, 65504.0}) {
        const auto suitable = suitableExposure(10.0, 0.5, largest);
        ASSERT_TRUE(suitable.has_value()) << largest;
        EXPECT_FALSE(suitableExposure(*suitable, 0.5, largest).has_value()) << largest;
        EXPECT_GT(*suitable * (largest - 0.5), 35.0 * 0.49) << largest;
    }
    EXPECT_EQ(suitableExposure(10.0, 0.0, 1e9).value(), 0.0);
}

}  // namespace
}  // namespace cli
