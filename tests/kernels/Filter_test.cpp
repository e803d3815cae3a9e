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

TEST(Filter, SharesTheRadiusLinearlyBetweenLayers) {
    EXPECT_EQ(getNFactor<1>(0), 1.0);
    EXPECT_EQ(getNFactor<2>(0), 1.0);
    EXPECT_EQ(getNFactor<2>(1), 1e-5);
    EXPECT_EQ(getNFactor<3>(1), 0.5);
    EXPECT_EQ(getNFactor<4>(1), 2.0 / 3.0);
    for (std::size_t l = 0; l < 15; ++l) {
        EXPECT_EQ(getNFactor<16>(l), static_cast<double>(15 - l) / 15.0);
    }
    EXPECT_EQ(getNFactor<16>(15), 1e-5);
}

}  // namespace
