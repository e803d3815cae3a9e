// SPDX-License-Identifier: Apache-2.0
#include "transform/RealFFT2DImpl.h"

#include <gtest/gtest.h>

#include <numbers>

#include "support/HostFixture.h"
#include "support/Noise.h"
#include "support/Reference.h"
#include "transform/FFT2DImpl.h"

namespace {

constexpr std::size_t kThreads = headless::kThreadIndices;
constexpr double kLeft = 1e300;  // where nothing may be read or written

class RealFFT2DTest : public ContextFixture {
protected:
    void TearDown() override {
        tables.reset();
        ContextFixture::TearDown();
    }
    FFTWeights& makeTables(std::size_t size) { return tables.emplace(*context, kThreads, size); }

    std::optional<FFTWeights> tables;
};

// A block of kCell lanes, of whose first `live` ones the groups `used` are transformed.
template <std::size_t kCell, std::size_t live, LaneGroups used>
struct Cut {
    static constexpr std::size_t kLanes = kCell;
    static constexpr LaneGroups kUsed = used;
    using Element = ET::vecT<double, kCell>;
    using Transform = RealFFT2D<kCell, live>;
    static bool uses(std::size_t lane) {
        return lane < live && contains(kUsed, lane / kGroupLanes);
    }
};

template <class C>
class RealFFT2DOf : public RealFFT2DTest {};

// Kernel banks and blocks of all kinds: one group, whole and narrower groups, the first lanes only.
using Cuts = testing::Types<Cut<1, 1, 1>, Cut<3, 3, 1>, Cut<4, 4, 1>, Cut<7, 7, 1>, Cut<10, 10, 1>,
                            Cut<10, 6, 1>, Cut<25, 25, 3>, Cut<25, 25, 2>, Cut<30, 30, 1>,
                            Cut<35, 11, 1>, Cut<80, 80, 15>, Cut<80, 80, 6>, Cut<80, 20, 1>>;
TYPED_TEST_SUITE(RealFFT2DOf, Cuts);

// Real samples in the lanes in use.
template <class C>
std::vector<typename C::Element> realBlock(std::size_t size) {
    auto block = noisyElements<typename C::Element>(2 * size * size);
    for (std::size_t i = 0; i < block.size(); ++i) {
        for (std::size_t k = 0; k < C::kLanes; ++k) {
            if (!C::uses(k)) block[i][k] = kLeft;
            if (C::uses(k) && i % 2 == 1) block[i][k] = 0.0;
        }
    }
    return block;
}

}  // namespace

TYPED_TEST(RealFFT2DOf, EqualsTheGeneralTransform) {
    for (const std::size_t size : {std::size_t{64}, std::size_t{128}}) {
        FFTWeights& weights = this->makeTables(size);
        auto block = realBlock<TypeParam>(size);
        auto reference = block;
        ASSERT_EQ((typename TypeParam::Transform(weights, block.data(), size, TypeParam::kUsed)
                       .forward(*this->context)),
                  0);
        ASSERT_EQ((FFT2D<typename TypeParam::Element>(weights, reference.data(), size)
                       .doFFT2D(*this->context, false)),
                  0);
        for (std::size_t i = 0; i < block.size(); ++i) {
            const bool half = i / 2 / size <= size / 2;
            for (std::size_t k = 0; k < TypeParam::kLanes; ++k) {
                if (!TypeParam::uses(k)) {
                    ASSERT_EQ(block[i][k], kLeft);
                } else if (half) {
                    ASSERT_NEAR(block[i][k], reference[i][k], 1e-11) << i << " lane " << k;
                }
            }
        }
    }
}

TYPED_TEST(RealFFT2DOf, InverseBringsBackTheRowsAskedFor) {
    const auto check = [&](std::size_t size, const RowRange& rows) {
        FFTWeights& weights = this->makeTables(size);
        auto block = realBlock<TypeParam>(size);
        const auto before = block;
        typename TypeParam::Transform transform(weights, block.data(), size, TypeParam::kUsed);
        ASSERT_EQ(transform.forward(*this->context), 0);
        ASSERT_EQ(transform.inverse(*this->context, rows), 0);
        const auto samples = static_cast<double>(size * size);
        for (std::size_t p = rows.first * size; p < rows.last * size; ++p) {
            for (std::size_t k = 0; k < TypeParam::kLanes; ++k) {
                const double factor = TypeParam::uses(k) ? samples : 1.0;
                ASSERT_NEAR(block[2 * p][k], before[2 * p][k] * factor, 1e-14 * samples)
                    << size << ": sample " << p << " lane " << k;
            }
        }
    };
    for (const RowRange rows : {RowRange{0, 64}, {15, 50}, {31, 32}, {33, 34}, {0, 8}}) {
        check(64, rows);
    }
    check(128, {20, 107});
    if (TypeParam::kLanes <= 4) check(512, {101, 411});
    if (TypeParam::kLanes == 1) check(2048, {500, 1548});
}

// Points of light, whose spectrum is a sum of few waves, in blocks of all sizes in use.
TEST_F(RealFFT2DTest, EqualsTheDirectSum) {
    struct Point {
        std::size_t x, y;
        double value;
    };
    for (std::size_t size = 64; size <= 1024; size *= 2) {
        const Point points[] = {{1, 0, 1.0}, {size - 3, size / 2, -0.5}, {17, size - 1, 2.0}};
        std::vector<ET::vecT<double, 1>> block(2 * size * size);
        for (auto& element : block) element[0] = 0.0;
        for (const Point& p : points) block[2 * (p.y * size + p.x)][0] = p.value;
        FFTWeights& weights = makeTables(size);
        ASSERT_EQ((RealFFT2D<1>(weights, block.data(), size).forward(*context)), 0);
        for (std::size_t i = 0; i < (size / 2 + 1) * size; i += 7) {
            const std::size_t u = i / size;
            const std::size_t v = i % size;
            std::complex<double> sum;
            for (const Point& p : points) {
                const auto turns = static_cast<double>((p.x * u + p.y * v) % size);
                sum +=
                    std::polar(p.value, 2.0 * std::numbers::pi * turns / static_cast<double>(size));
            }
            ASSERT_NEAR(block[2 * i][0], sum.real(), 1e-13) << size << ": " << u << ", " << v;
            ASSERT_NEAR(block[2 * i + 1][0], sum.imag(), 1e-13) << size << ": " << u << ", " << v;
        }
    }
}

// A host that cuts an iteration into contiguous shares gives each the same number of rows.
TEST_F(RealFFT2DTest, SpreadsTheRowsOfATileOverTheItems) {
    constexpr std::size_t kSize = 64;
    std::vector<ET::vecT<double, 1>> elements(2 * kSize * kSize);
    FFTWeights& weights = makeTables(kSize);
    RealRowPass<1, 1> pass{{weights, elements.data(), kSize, 1}, true, {15, 50}};
    for (int quarter = 0; quarter < 4; ++quarter) {
        for (auto& element : elements) element[0] = 1.0;
        for (int item = 16 * quarter; item < 16 * (quarter + 1); ++item) pass.iterate(0, item, 64);
        int rows = 0;
        for (std::size_t y = 0; y < kSize; ++y) rows += elements[2 * y * kSize + 4][0] != 1.0;
        EXPECT_NEAR(rows, 9, 1) << quarter;  // of 36
    }
}

// Work is spread evenly: each quarter of the items has a quarter of it, within one piece.
TEST(EvenShare, SpreadsUnitsOverItems) {
    for (const std::size_t units : {std::size_t{33}, std::size_t{64}, std::size_t{1}}) {
        const EvenShare share(units, 256);
        std::size_t next = 0;
        for (int item = 0; item < 256; ++item) {
            share.run(item, [&](std::size_t unit) { EXPECT_EQ(unit, next++); });
            const double due = static_cast<double>(units) * (item + 1) / 256.0;
            EXPECT_LE(std::abs(static_cast<double>(next) - due), 1.0);
        }
        EXPECT_EQ(next, units);
    }
}
