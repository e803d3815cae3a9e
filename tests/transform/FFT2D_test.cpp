// SPDX-License-Identifier: Apache-2.0
#include "transform/FFT2DImpl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "support/HostFixture.h"
#include "support/Noise.h"
#include "support/Reference.h"

namespace {

constexpr std::size_t kThreads = headless::kThreadIndices;
constexpr std::size_t kSize = 64;
constexpr std::size_t kElements = 2 * kSize * kSize;

// Each row by the direct sum, stored as a column.
Signal transformRowsAndTranspose(const Signal& plane) {
    Signal result(plane.size());
    for (std::size_t y = 0; y < kSize; ++y) {
        const auto begin = plane.begin() + static_cast<std::ptrdiff_t>(y * kSize);
        const Signal row(begin, begin + kSize);
        for (std::size_t u = 0; u < kSize; ++u) {
            result[u * kSize + y] = directSum(row, u, false);
        }
    }
    return result;
}

class FFT2DTest : public ContextFixture {
protected:
    // The tables are in host memory and have to be freed before the fixture checks the host's
    // books.
    void TearDown() override {
        tables.reset();
        ContextFixture::TearDown();
    }

    FFTWeights& makeTables() { return tables.emplace(*context, kThreads, kSize); }
    template <class T>
    int transform(std::vector<T>& block, bool back) {
        return FFT2D<T>(*tables, block.data(), kSize).doFFT2D(*context, back);
    }

    std::optional<FFTWeights> tables;
};

template <class T>
class FFT2DOf : public FFT2DTest {};

using Types =
    testing::Types<ET::vecT<double, 1>, ET::vecT<double, 2>, ET::vecT<double, 4>,
                   ET::vecT<double, 10>, ET::vecT<double, 80>, ET::StrideVecT<double, 4, 4>,
                   ET::StrideVecT<double, 6, 10>, ET::StrideVecT<double, 20, 80>>;
TYPED_TEST_SUITE(FFT2DOf, Types);

}  // namespace

TYPED_TEST(FFT2DOf, LeavesTheSpectrumTransposed) {
    this->makeTables();
    auto block = noisyElements<TypeParam>(kElements);
    constexpr std::size_t kLast = TypeParam::kLanes - 1;
    // Rows become columns twice, so the result is the spectrum, not transposed.
    const Signal upright = transformRowsAndTranspose(
        transformRowsAndTranspose(laneOf(block.data(), kSize * kSize, kLast)));
    ASSERT_EQ(this->transform(block, false), 0);
    const Signal spectrum = laneOf(block.data(), kSize * kSize, kLast);
    for (std::size_t v = 0; v < kSize; ++v) {
        for (std::size_t u = 0; u < kSize; ++u) {
            EXPECT_NEAR(std::abs(spectrum[u * kSize + v] - upright[v * kSize + u]), 0, 1e-11);
        }
    }
}

TYPED_TEST(FFT2DOf, InverseTakesItBackTimesTheSampleCount) {
    this->makeTables();
    auto block = noisyElements<TypeParam>(kElements);
    const auto before = block;
    ASSERT_EQ(this->transform(block, false), 0);
    ASSERT_EQ(this->transform(block, true), 0);
    for (std::size_t i = 0; i < kElements; ++i) {
        for (std::size_t k = 0; k < TypeParam::kLanes; ++k) {
            ASSERT_NEAR(block[i][k], before[i][k] * kSize * kSize, 1e-10) << i << " lane " << k;
        }
        // Dead lanes have moved to the transposed place and back.
        ASSERT_EQ(std::memcmp(&block[i][0] + TypeParam::kLanes, &before[i][0] + TypeParam::kLanes,
                              sizeof(TypeParam) - TypeParam::kLanes * sizeof(double)),
                  0);
    }
}

TEST_F(FFT2DTest, EveryThreadMakesItsOwnTableOnce) {
    makeTables();
    ASSERT_EQ(tables->ip.size(), 10u * kThreads);
    ASSERT_EQ(tables->w.size(), kSize / 2 * kThreads);
    auto block = noisyElements<ET::vecT<double, 1>>(kElements);
    ASSERT_EQ(transform(block, false), 0);
    for (int t = 0; t < int{kThreads}; ++t) {
        EXPECT_EQ(tables->ipOf(t)[0], int{kSize / 2});
        tables->ipOf(t)[1] = 99;  // a new table would set it to 1
    }
    ASSERT_EQ(transform(block, true), 0);
    for (int t = 0; t < int{kThreads}; ++t) EXPECT_EQ(tables->ipOf(t)[1], 99);
}

TEST_F(FFT2DTest, StopsAtTheFirstFailureOfItsThreeIterations) {
    makeTables();
    auto block = noisyElements<ET::vecT<double, 1>>(kElements);
    for (const int k : {1, 2, 3, 4}) {
        host.failures().clear();
        host.failAt(headless::Operation::kIterateGeneric, k, PF_Interrupt_CANCEL);
        EXPECT_EQ(transform(block, true), k < 4 ? PF_Interrupt_CANCEL : 0);
        EXPECT_EQ(host.failures().count(headless::Operation::kIterateGeneric), std::min(k, 3));
    }
}
