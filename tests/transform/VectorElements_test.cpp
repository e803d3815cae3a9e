// SPDX-License-Identifier: Apache-2.0
#include "transform/VectorElements.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "support/Noise.h"

namespace {

template <class V>
class Elements : public testing::Test {
protected:
    static constexpr std::size_t kCell = sizeof(V) / sizeof(double);

    // Checks that `target = value` sets each live lane to expected(k) and leaves the dead ones.
    template <class E, class F>
    void expectLanes(const E& value, F expected) {
        V target = elements[2];
        target = value;
        for (std::size_t k = 0; k < V::kLanes; ++k) EXPECT_EQ(target[k], expected(k)) << k;
        for (std::size_t k = V::kLanes; k < kCell; ++k) EXPECT_EQ(target[k], elements[2][k]) << k;
    }

    std::vector<V> elements = noisyElements<V>(3);
    V& first = elements[0];
    V& second = elements[1];
    static constexpr double kS = 0.75;
    static constexpr double kT = -1.3;
};

using Types = testing::Types<ET::vecT<double, 1>, ET::vecT<double, 4>, ET::vecT<double, 11>,
                             ET::vecT<double, 80>, ET::StrideVecT<double, 4, 4>,
                             ET::StrideVecT<double, 6, 10>, ET::StrideVecT<double, 20, 80>>;
TYPED_TEST_SUITE(Elements, Types);

}  // namespace

TYPED_TEST(Elements, EveryFormComputesLiveLanesOnly) {
    const auto &a = this->first, &b = this->second;
    const double s = this->kS, t = this->kT;
    this->expectLanes(a + b, [&](auto k) { return a[k] + b[k]; });
    this->expectLanes(a - b, [&](auto k) { return a[k] - b[k]; });
    this->expectLanes(-a, [&](auto k) { return -a[k]; });
    this->expectLanes(-a + b, [&](auto k) { return b[k] - a[k]; });
    this->expectLanes(-a - b, [&](auto k) { return -a[k] - b[k]; });
    this->expectLanes(s * a, [&](auto k) { return s * a[k]; });
    this->expectLanes(s * (a - b), [&](auto k) { return s * (a[k] - b[k]); });
    this->expectLanes(s * (a + b), [&](auto k) { return s * (a[k] + b[k]); });
    this->expectLanes(s * a - t * b, [&](auto k) { return s * a[k] - t * b[k]; });
    this->expectLanes(s * a + t * b, [&](auto k) { return t * b[k] + s * a[k]; });
}

TYPED_TEST(Elements, TheTargetMayBeAnOperand) {
    const TypeParam a = this->first, b = this->second;
    TypeParam apart = a;
    apart = this->kS * a - this->kT * b;
    this->first = this->kS * this->first - this->kT * this->second;
    EXPECT_EQ(std::memcmp(&this->first, &apart, sizeof apart), 0);
    this->first = a;
    this->first += b;
    apart = a + b;
    EXPECT_EQ(std::memcmp(&this->first, &apart, sizeof apart), 0);
}

TYPED_TEST(Elements, CopiesAndSwapsMoveTheWholeCell) {
    const TypeParam a = this->first, b = this->second;
    swap(this->first, this->second);
    EXPECT_EQ(std::memcmp(&this->first, &b, sizeof b), 0);
    EXPECT_EQ(std::memcmp(&this->second, &a, sizeof a), 0);
    this->second = this->first;
    EXPECT_EQ(std::memcmp(&this->second, &b, sizeof b), 0);
}

// Dead lanes that hold the same bits aren't stored; a difference of one bit counts, even between 0
// and -0.
TEST(VectorElements, CellsThatDifferInOneDeadLaneAreSwapped) {
    using Cell = ET::StrideVecT<double, 2, 4>;
    for (const double apart : {1.0, -0.0}) {
        const double values[2][4] = {{1.0, 2.0, 0.0, 0.0}, {3.0, 4.0, 0.0, apart}};
        Cell cells[2];
        std::memcpy(cells, values, sizeof cells);
        swap(cells[0], cells[1]);
        EXPECT_EQ(std::memcmp(&cells[0], values[1], sizeof(Cell)), 0);
        EXPECT_EQ(std::memcmp(&cells[1], values[0], sizeof(Cell)), 0);
    }
}

TEST(VectorElements, AViewSharesAddressesWithItsArray) {
    auto cells = noisyElements<ET::vecT<double, 10>>(3);
    const auto before = cells;
    auto* const view = ET::viewLanes<6>(cells.data());
    EXPECT_EQ(static_cast<void*>(view + 2), &cells[2]);
    view[2] = view[0] + view[1];
    EXPECT_EQ(cells[2][5], before[0][5] + before[1][5]);
    EXPECT_EQ(cells[2][6], before[2][6]);
}
