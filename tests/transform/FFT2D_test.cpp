#include "transform/FFT2DImpl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstring>

#include "host/HostFixture.h"
#include "transform/Noise.h"
#include "transform/Reference.h"

namespace {

using testing::ElementsAre;

constexpr std::size_t kThreads = 2;  // of the fixture's host
constexpr std::size_t kSize = 64;
constexpr std::size_t kElements = 2 * kSize * kSize;

// The samples of one lane of a block, row by row.
template <class T>
Signal planeOf(const std::vector<T>& block, std::size_t lane) {
    return laneOf(block.data(), block.size() / 2, lane);
}

// Each row by the direct sum, laid down as a column.
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
    // The tables belong to the host and have to go before the fixture looks at its books.
    void TearDown() override {
        tables.reset();
        ContextFixture::TearDown();
    }

    FFTWeights& makeTables(std::size_t size = kSize) {
        return tables.emplace(*context, kThreads, size);
    }
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
    // Rows become columns twice: the second time the result is the spectrum as it would stand.
    const Signal upright =
        transformRowsAndTranspose(transformRowsAndTranspose(planeOf(block, kLast)));
    ASSERT_EQ(this->transform(block, false), 0);
    const Signal spectrum = planeOf(block, kLast);
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
        // Dead lanes have been to both transposed places.
        ASSERT_EQ(std::memcmp(&block[i][0] + TypeParam::kLanes, &before[i][0] + TypeParam::kLanes,
                              sizeof(TypeParam) - TypeParam::kLanes * sizeof(double)),
                  0);
    }
}

TEST_F(FFT2DTest, DeadLanesAreTransposedWithTheirSamples) {
    using T = ET::StrideVecT<double, 6, 10>;
    makeTables();
    auto block = noisyElements<T>(kElements);
    const auto before = block;
    ASSERT_EQ(transform(block, false), 0);
    const int bits = std::countr_zero(kSize);
    for (std::size_t i = 0; i < kElements; ++i) {
        const std::size_t row = i / 2 / kSize, column = i / 2 % kSize;
        // Each row pass brings a sample to the reversed index of its row.
        const std::size_t y = reversedBits(column, bits), x = reversedBits(row, bits);
        ASSERT_EQ(
            std::memcmp(&block[i][6], &before[2 * (y * kSize + x) + i % 2][6], 4 * sizeof(double)),
            0)
            << row << " " << column;
    }
}

TEST_F(FFT2DTest, AnOffCentreImpulseVariesAlongItsAxisOnly) {
    makeTables();
    std::vector<ET::vecT<double, 1>> block(kElements);
    block[2 * 1][0] = 1.0;  // row 0, column 1
    ASSERT_EQ(transform(block, false), 0);
    const Signal spectrum = planeOf(block, 0);
    for (std::size_t i = 0; i < spectrum.size(); ++i) {
        EXPECT_NEAR(std::abs(spectrum[i] - root(i / kSize, kSize)), 0, 1e-14) << i;
    }
}

TEST_F(FFT2DTest, LongRowsRoundTrip) {
    constexpr std::size_t kLong = 1024;
    makeTables(kLong);
    auto block = noisyElements<ET::vecT<double, 1>>(2 * kLong * kLong);
    const auto before = block;
    FFT2D fft(*tables, block.data(), kLong);
    ASSERT_EQ(fft.doFFT2D(*context, false), 0);
    ASSERT_EQ(fft.doFFT2D(*context, true), 0);
    double worst = 0;
    for (std::size_t i = 0; i < block.size(); ++i) {
        worst = std::max(worst, std::abs(block[i][0] - before[i][0] * kLong * kLong));
    }
    EXPECT_LT(worst, 1e-14 * kLong * kLong);
}

TEST_F(FFT2DTest, ABlockIsSeenThroughItsLiveLanes) {
    makeTables();
    auto whole = noisyElements<ET::vecT<double, 10>>(kElements);
    auto viewed = whole;
    ASSERT_EQ(transform(whole, false), 0);
    auto* const view = ET::viewLanes<6>(viewed.data());
    ASSERT_EQ(FFT2D(*tables, view, kSize).doFFT2D(*context, false), 0);
    for (std::size_t i = 0; i < kElements; ++i) {
        ASSERT_EQ(std::memcmp(&whole[i], &viewed[i], 6 * sizeof(double)), 0) << i;
    }
}

TEST_F(FFT2DTest, EveryThreadMakesItsOwnTableOnce) {
    makeTables();
    ASSERT_EQ(tables->ipStride, 10u);
    ASSERT_EQ(tables->wStride, kSize / 2);
    ASSERT_EQ(tables->ip.size(), 10u * kThreads);
    ASSERT_EQ(tables->w.size(), kSize / 2 * kThreads);
    for (int t = 0; t < int{kThreads}; ++t) EXPECT_EQ(tables->ipOf(t)[0], int{kSize / 4});
    EXPECT_EQ(std::memcmp(tables->wOf(0), tables->wOf(1), kSize / 2 * sizeof(double)), 0);

    auto block = noisyElements<ET::vecT<double, 1>>(kElements);
    ASSERT_EQ(transform(block, false), 0);
    for (int t = 0; t < int{kThreads}; ++t) {
        EXPECT_EQ(tables->ipOf(t)[0], int{kSize / 2});
        tables->ipOf(t)[1] = 99;  // a new table would set it to 1
    }
    auto other = noisyElements<ET::vecT<double, 4>>(kElements);
    ASSERT_EQ(transform(other, true), 0);
    for (int t = 0; t < int{kThreads}; ++t) EXPECT_EQ(tables->ipOf(t)[1], 99);
}

TEST_F(FFT2DTest, RunsThreeIterationsAndStopsAtTheFirstFailure) {
    makeTables();
    auto block = noisyElements<ET::vecT<double, 1>>(kElements);
    const auto isIteration = [](const std::string& call) {
        return call.starts_with("AEGP_IterateGeneric");
    };
    auto calls = callsOf([&] { EXPECT_EQ(transform(block, false), 0); });
    std::erase_if(calls, [&](const auto& call) { return !isIteration(call); });
    EXPECT_THAT(calls, ElementsAre("AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192",
                                   "AEGP_IterateGeneric 64"));

    for (const int k : {1, 2, 3}) {
        host.failAt(headless::Operation::IterateGeneric, k, PF_Interrupt_CANCEL);
        calls = callsOf([&] { EXPECT_EQ(transform(block, true), PF_Interrupt_CANCEL); });
        EXPECT_EQ(std::count_if(calls.begin(), calls.end(), isIteration), k);
    }
}

TEST_F(FFT2DTest, TheDirectionIsKept) {
    makeTables();
    auto block = noisyElements<ET::vecT<double, 1>>(kElements);
    FFT2D fft(*tables, block.data(), kSize);
    ASSERT_EQ(fft.doFFT2D(*context, true), 0);
    EXPECT_TRUE(fft.back);
    ASSERT_EQ(fft.doFFT2D(*context, false), 0);
    EXPECT_FALSE(fft.back);
}

TEST(Flip, ExchangesEachPairOnceFromBelowTheDiagonal) {
    using T = ET::StrideVecT<double, 1, 2>;
    std::vector<T> block = noisyElements<T>(kElements);
    const auto before = block;
    const Flip<T> flip{block.data(), kSize};
    std::size_t swaps = 0;
    for (std::size_t i = 0; i < kElements; ++i) {
        const T element = block[i];
        EXPECT_EQ(flip.iterate(0, static_cast<int>(i), int{kElements}), 0);
        if (std::memcmp(&element, &block[i], sizeof element) == 0) continue;
        ++swaps;
        EXPECT_LT(i / 2 % kSize, i / 2 / kSize);
    }
    EXPECT_EQ(swaps, kSize * (kSize - 1));
    for (std::size_t i = 0; i < kElements; ++i) {
        const std::size_t mirror = 2 * (i / 2 % kSize * kSize + i / 2 / kSize) + i % 2;
        EXPECT_EQ(std::memcmp(&block[i], &before[mirror], sizeof(T)), 0);
    }
}
