// SPDX-License-Identifier: Apache-2.0
#include "kernels/Filter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

TEST(Filter, ChoosesTheBlockByStrictLimits) {
    std::size_t size = 64;
    for (double limit = 16.0; limit <= 1024.0; limit *= 2.0, size *= 2) {
        EXPECT_EQ(Filter<1>::GetFilterSize(std::nextafter(limit, 0.0)), size) << limit;
        EXPECT_EQ(Filter<16>::GetFilterSize(limit), 2 * size) << limit;
    }
    EXPECT_EQ(Filter<3>::GetFilterSize(-1.0), 64u);
    EXPECT_EQ(Filter<3>::GetFilterSize(std::numeric_limits<double>::infinity()), 8192u);
}

}  // namespace
