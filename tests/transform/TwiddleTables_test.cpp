#include "transform/TwiddleTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "transform/Reference.h"

namespace {

constexpr double kUnwritten = -77.0;
constexpr int kUntouched = -77;

struct Tables {
    explicit Tables(int nw) : ip(200, kUntouched), w(static_cast<std::size_t>(nw) + 1, kUnwritten) {
        makewt(nw, ip.data(), w.data());
    }
    std::vector<int> ip;
    std::vector<double> w;
};

}  // namespace

TEST(TwiddleTables, SeedsAreReversedNumbersInPlace) {
    for (int nw = 16, m = 2, bits = 1; nw <= 4096; nw *= 2) {
        const Tables tables(nw);
        for (; 8 * m * m < nw; m *= 2) ++bits;
        for (int k = 0; k < m; ++k) {
            EXPECT_EQ(tables.ip[static_cast<std::size_t>(m + k)],
                      8 * m * static_cast<int>(reversedBits(static_cast<std::size_t>(k), bits)))
                << nw << " " << k;
        }
        EXPECT_EQ(tables.ip[0], nw);
        EXPECT_EQ(tables.w.back(), kUnwritten);
        // No more than a thread's share of integers is written.
        EXPECT_EQ(tables.ip[static_cast<std::size_t>(std::sqrt(2.0 * nw)) + 2], kUntouched) << nw;
    }
}

TEST(TwiddleTables, CosineTableHoldsAQuarterTurn) {
    constexpr int kSize = 8;
    int ip[2] = {0, 0};
    double c[kSize];
    makect(kSize, ip, c);
    EXPECT_EQ(ip[1], kSize);
    EXPECT_NEAR(c[0], std::sqrt(0.5), 1e-15);
    for (int j = 1; j < kSize; ++j) {
        EXPECT_NEAR(c[j], 0.5 * std::cos(std::numbers::pi / 2 / kSize * j), 1e-15) << j;
    }
}
