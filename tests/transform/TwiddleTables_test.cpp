// SPDX-License-Identifier: Apache-2.0
#include "transform/TwiddleTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

// The tests of the transform show whether the values are right.
TEST(TwiddleTables, KeepToAThreadsShareOfTheMemory) {
    for (int nw = 2; nw <= 4096; nw *= 2) {
        constexpr int kUntouched = -77;
        std::vector<int> ip(200, kUntouched);
        std::vector<double> w(static_cast<std::size_t>(nw) + 1, kUntouched);
        makewt(nw, ip.data(), w.data());
        EXPECT_EQ(ip[0], nw);
        EXPECT_EQ(ip[1], 1);
        EXPECT_EQ(w.back(), kUntouched);
        EXPECT_EQ(ip[static_cast<std::size_t>(std::sqrt(2.0 * nw)) + 2], kUntouched) << nw;
    }
}
