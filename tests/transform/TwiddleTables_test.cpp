#include "transform/TwiddleTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

// The transform itself tells whether the tables are right.
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

TEST(TwiddleTables, CosineTableHoldsAQuarterTurn) {
    int ip[2] = {0, 0};
    double c[8];
    makect(8, ip, c);
    EXPECT_EQ(ip[1], 8);
    EXPECT_NEAR(c[0], std::sqrt(0.5), 1e-15);
    for (int j = 1; j < 8; ++j) EXPECT_NEAR(c[j], 0.5 * std::cos(std::acos(-1) / 16 * j), 1e-15);
}
