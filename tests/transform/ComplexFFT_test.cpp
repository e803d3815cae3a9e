// SPDX-License-Identifier: Apache-2.0
#include "transform/ComplexFFT.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <string>

#include "support/Noise.h"
#include "support/Reference.h"

namespace {

constexpr std::size_t kLargestN = 16384;

// Tables for transforms of up to n elements.
class Tables {
public:
    explicit Tables(std::size_t n) : nw(static_cast<int>(n / 4)), ip(200), w(n / 4 + 8) {
        makewt(nw, ip.data(), w.data());
    }

    template <class T>
    void run(std::vector<T>& a, bool back) const {
        const int n = static_cast<int>(a.size());
        if (back) {
            cftbsub(n, a.data(), ip.data(), nw, w.data());
        } else {
            cftfsub(n, a.data(), ip.data(), nw, w.data());
        }
    }
    const int nw;
    std::vector<int> ip;
    std::vector<double> w;
};

// Lane firstLane + k of `wide` holds the bits of lane k of `narrow`, for all lanes of the latter.
template <class Wide, class Narrow>
void expectSameBits(const std::vector<Wide>& wide, const std::vector<Narrow>& narrow,
                    std::size_t firstLane = 0) {
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const double* const part = &wide[i][firstLane];
        ASSERT_EQ(std::memcmp(part, &narrow[i], Narrow::kLanes * sizeof(double)), 0)
            << "element " << i << " of " << wide.size() << ", lane " << firstLane;
    }
}

template <class Narrow, class Wide>
std::vector<Narrow> lanesFrom(const std::vector<Wide>& wide, std::size_t firstLane) {
    std::vector<Narrow> narrow(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        for (std::size_t k = 0; k < Narrow::kLanes; ++k) narrow[i][k] = wide[i][firstLane + k];
    }
    return narrow;
}

// Both directions of every size.
class EverySize : public testing::TestWithParam<bool> {
protected:
    template <class Body>
    void forEverySize(Body body) {
        for (std::size_t n = 4; n <= kLargestN; n *= 2) body(n, Tables(n));
    }
    const bool back = GetParam();
};

}  // namespace

// With tables of its own size, and with larger ones.
TEST_P(EverySize, EqualsTheDirectSum) {
    const Tables large(kLargestN);
    forEverySize([&](std::size_t n, const Tables& tables) {
        const std::size_t samples = n / 2;
        auto a = noisyElements<ET::vecT<double, 2>>(n);
        auto b = a;
        const Signal x = laneOf(a.data(), samples, 1);
        tables.run(a, back);
        large.run(b, back);
        const std::size_t step = samples > 1024 ? 37 : 1;
        for (std::size_t k = 0; k < samples; k += step) {
            const Complex sum = directSum(x, k, back);
            const double tolerance = 3e-15 * static_cast<double>(samples);
            EXPECT_NEAR(std::abs(Complex(a[2 * k][1], a[2 * k + 1][1]) - sum), 0.0, tolerance)
                << "sample " << k << " of " << samples;
            EXPECT_NEAR(std::abs(Complex(b[2 * k][1], b[2 * k + 1][1]) - sum), 0.0, tolerance);
        }
    });
}

TEST_P(EverySize, EveryLaneHasTheBitsOfALoneSignal) {
    forEverySize([&](std::size_t n, const Tables& tables) {
        const auto before = noisyElements<ET::vecT<double, 10>>(n);
        auto wide = before;
        tables.run(wide, back);
        for (std::size_t lane = 0; lane < 10; ++lane) {
            auto alone = lanesFrom<ET::vecT<double, 1>>(before, lane);
            tables.run(alone, back);
            expectSameBits(wide, alone, lane);
        }
    });
}

TEST_P(EverySize, DeadLanesMoveWithTheirSampleUnchanged) {
    forEverySize([&](std::size_t n, const Tables& tables) {
        const auto before = noisyElements<ET::StrideVecT<double, 6, 10>>(n);
        auto a = before;
        auto live = lanesFrom<ET::vecT<double, 6>>(before, 0);
        tables.run(a, back);
        tables.run(live, back);
        expectSameBits(a, live);

        // Smaller transforms write the samples where they belong, or reverse them twice.
        if (n < 16 || (back && n <= 32)) return;
        const int bits = std::countr_zero(n) - 1;
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t from = 2 * reversedBits(i / 2, bits) + i % 2;
            ASSERT_EQ(std::memcmp(&a[i][6], &before[from][6], 4 * sizeof(double)), 0)
                << i << " of " << n;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(ComplexFFT, EverySize, testing::Bool(), [](const auto& test) {
    return std::string(test.param ? "Backward" : "Forward");
});
