#include "transform/TwiddleTables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

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

int reversed(int value, int bits) {
    int result = 0;
    for (int bit = 0; bit < bits; ++bit) result |= (value >> bit & 1) << (bits - 1 - bit);
    return result;
}

void expectSubTable(const double* w, int size) {
    SCOPED_TRACE(size);
    const double d = std::numbers::pi / 4 / size;
    EXPECT_EQ(w[0], 1.0);
    EXPECT_NEAR(w[1], std::sqrt(0.5), 1e-15);
    if (size == 4) {
        EXPECT_NEAR(w[2], std::cos(2 * d), 1e-15);
        EXPECT_NEAR(w[3], std::sin(2 * d), 1e-15);
    }
    if (size <= 4) return;
    EXPECT_NEAR(w[2], 0.5 / std::cos(2 * d), 1e-15);
    EXPECT_NEAR(w[3], 0.5 / std::cos(6 * d), 1e-15);
    for (int j = 4; j < size; j += 4) {
        EXPECT_NEAR(w[j], std::cos(d * j), 1e-15);
        EXPECT_NEAR(w[j + 1], std::sin(d * j), 1e-15);
        EXPECT_NEAR(w[j + 2], std::cos(3 * d * j), 1e-15);
        EXPECT_NEAR(w[j + 3], -std::sin(3 * d * j), 1e-15);
    }
}

}  // namespace

TEST(TwiddleTables, EverySubTableHoldsItsAngles) {
    for (int nw = 4; nw <= 4096; nw *= 2) {
        const Tables tables(nw);
        EXPECT_EQ(tables.ip[0], nw);
        EXPECT_EQ(tables.ip[1], 1);
        for (int size = nw / 2; size >= 2; size /= 2) {
            expectSubTable(&tables.w[static_cast<std::size_t>(nw - 2 * size)], size);
        }
        EXPECT_EQ(tables.w[static_cast<std::size_t>(nw - 1)], kUnwritten);
        EXPECT_EQ(tables.w[static_cast<std::size_t>(nw - 2)], kUnwritten);
        EXPECT_EQ(tables.w.back(), kUnwritten);
    }
}

TEST(TwiddleTables, SmallTablesLeaveTheSeedsAlone) {
    const Tables two(2);
    EXPECT_EQ(two.ip[0], 2);
    EXPECT_EQ(two.ip[1], 1);
    EXPECT_EQ(two.w[0], kUnwritten);
    EXPECT_EQ(two.ip[2], kUntouched);
    const Tables eight(8);
    EXPECT_EQ(eight.ip[2], kUntouched);
}

TEST(TwiddleTables, SeedsAreReversedNumbersInPlace) {
    for (int nw = 16, m = 2, bits = 1; nw <= 4096; nw *= 2) {
        const Tables tables(nw);
        for (; 8 * m * m < nw; m *= 2) ++bits;
        for (int k = 0; k < m; ++k) {
            EXPECT_EQ(tables.ip[static_cast<std::size_t>(m + k)], 8 * m * reversed(k, bits))
                << nw << " " << k;
        }
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
