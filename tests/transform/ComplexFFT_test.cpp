#include "transform/ComplexFFT.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <string>

#include "transform/Noise.h"
#include "transform/Reference.h"

namespace {

constexpr std::size_t kLargestN = 16384;

// Tables that suit a transform of n elements, or larger ones.
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
    const double* at(int fromEnd) const { return &w[static_cast<std::size_t>(nw - fromEnd)]; }

    const int nw;
    std::vector<int> ip;
    std::vector<double> w;
};

void expectNear(Complex value, Complex expected, std::size_t samples, std::size_t k) {
    EXPECT_NEAR(std::abs(value - expected), 0.0, 3e-15 * static_cast<double>(samples))
        << "sample " << k << " of " << samples;
}

// Lane k of `wide` holds the bits of lane k of `narrow`, for the lanes of the latter.
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

// The tree in plain complex arithmetic: splits a section of `x` and gives its four quarters.
void splitPass(Complex* x, std::size_t size, bool first) {
    const std::size_t m = size / 4;
    const Complex i{0, 1};
    for (std::size_t j = 0; j < m; ++j) {
        const Complex x0 = x[j], x1 = x[j + m], x2 = x[j + 2 * m], x3 = x[j + 3 * m];
        if (first) {
            x[j] = x0 + x2 + (x1 + x3);
            x[j + m] = x0 + x2 - (x1 + x3);
            x[j + 2 * m] = (x0 - x2 + i * (x1 - x3)) * root(j, size);
            x[j + 3 * m] = (x0 - x2 - i * (x1 - x3)) * root(3 * j, size);
        } else {
            const Complex y0 = (x0 + i * x2) * root(j, 2 * size);
            const Complex y1 = (x1 + i * x3) * root(j + m, 2 * size);
            const Complex y2 = (x0 - i * x2) * root(3 * j, 2 * size);
            const Complex y3 = (x1 - i * x3) * root(3 * (j + m), 2 * size);
            x[j] = y0 + y1;
            x[j + m] = y0 - y1;
            x[j + 2 * m] = y2 + y3;
            x[j + 3 * m] = y2 - y3;
        }
    }
}

void processSection(Complex* x, std::size_t size, bool first);

void processQuarters(Complex* x, std::size_t size, bool first) {
    const std::size_t m = size / 4;
    processSection(x, m, true);
    processSection(x + m, m, false);
    processSection(x + 2 * m, m, true);
    processSection(x + 3 * m, m, first);
}

void processSection(Complex* x, std::size_t size, bool first) {
    if (size == 2) {
        const Complex y = first ? x[1] : Complex{0, 1} * x[1];
        x[1] = x[0] - y;
        x[0] += y;
    } else if (size > 2) {
        splitPass(x, size, first);
        processQuarters(x, size, first);
    }
}

// Checks routine(a) on a section of n elements against reference(x, samples).
template <class Routine, class Reference>
void expectSection(const char* name, int n, Routine routine, Reference reference) {
    SCOPED_TRACE(std::string(name) + " " + std::to_string(n));
    using T = ET::vecT<double, 2>;
    auto a = noisyElements<T>(static_cast<std::size_t>(n));
    const std::size_t samples = a.size() / 2;
    Signal expected = laneOf(a.data(), samples, 1);
    routine(a.data());
    reference(expected.data(), samples);
    const Signal result = laneOf(a.data(), samples, 1);
    for (std::size_t j = 0; j < samples; ++j) expectNear(result[j], expected[j], samples, j);
}

}  // namespace

TEST_P(EverySize, EqualsTheDirectSum) {
    forEverySize([&](std::size_t n, const Tables& tables) {
        const std::size_t samples = n / 2;
        auto a = noisyElements<ET::vecT<double, 2>>(n);
        const Signal x = laneOf(a.data(), samples, 1);
        tables.run(a, back);
        const std::size_t step = samples > 1024 ? 37 : 1;
        for (std::size_t k = 0; k < samples; k += step) {
            expectNear({a[2 * k][1], a[2 * k + 1][1]}, directSum(x, k, back), samples, k);
        }
    });
}

TEST_P(EverySize, TheOtherDirectionTakesItBack) {
    forEverySize([&](std::size_t n, const Tables& tables) {
        const double samples = static_cast<double>(n / 2);
        auto a = noisyElements<ET::vecT<double, 1>>(n);
        const auto before = a;
        tables.run(a, back);
        tables.run(a, !back);
        for (std::size_t i = 0; i < n; ++i) {
            ASSERT_NEAR(a[i][0], before[i][0] * samples, 1e-14 * samples) << i << " of " << n;
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

        // Below that, the samples are written where they belong, or reversed twice.
        if (n < 16 || (back && n <= 32)) return;
        const int bits = std::countr_zero(n) - 1;
        for (std::size_t i = 0; i < n; ++i) {
            const std::size_t from = 2 * reversedBits(i / 2, bits) + i % 2;
            ASSERT_EQ(std::memcmp(&a[i][6], &before[from][6], 4 * sizeof(double)), 0)
                << i << " of " << n;
        }
    });
}

TEST_P(EverySize, TablesMayBeLargerThanNeeded) {
    const Tables large(kLargestN);
    forEverySize([&](std::size_t n, const Tables& tables) {
        auto a = noisyElements<ET::vecT<double, 1>>(n);
        auto b = a;
        tables.run(a, back);
        large.run(b, back);
        for (std::size_t i = 0; i < n; ++i) {
            ASSERT_NEAR(a[i][0], b[i][0], 1e-15 * static_cast<double>(n)) << i << " of " << n;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(ComplexFFT, EverySize, testing::Bool(), [](const auto& test) {
    return std::string(test.param ? "Backward" : "Forward");
});

TEST(ComplexFFT, TooFewElementsAreLeftAlone) {
    const Tables tables(64);
    auto a = noisyElements<ET::vecT<double, 1>>(2);
    const auto before = a;
    tables.run(a, false);
    tables.run(a, true);
    expectSameBits(a, before);
}

TEST(ComplexFFT, EveryRoutineDoesItsPartOfTheTree) {
    const Tables t(2048);
    const auto whole = [](bool first) {
        return [=](Complex* x, std::size_t size) { processSection(x, size, first); };
    };
    const auto split = [](bool first) {
        return [=](Complex* x, std::size_t size) { splitPass(x, size, first); };
    };
    const auto quarters = [](bool first) {
        return [=](Complex* x, std::size_t size) { processQuarters(x, size, first); };
    };
    expectSection(
        "cftf081", 16, [&](auto* a) { cftf081(a, t.at(8)); }, whole(true));
    expectSection(
        "cftf082", 16, [&](auto* a) { cftf082(a, t.at(8)); }, whole(false));
    expectSection(
        "cftf161", 32, [&](auto* a) { cftf161(a, t.at(8)); }, whole(true));
    expectSection(
        "cftf162", 32, [&](auto* a) { cftf162(a, t.at(32)); }, whole(false));
    for (const int n : {64, 128, 256, 512, 1024}) {
        expectSection(
            "cftmdl1", n, [&](auto* a) { cftmdl1(n, a, t.at(n >> 1)); }, split(true));
        expectSection(
            "cftf1st", n, [&](auto* a) { cftf1st(n, a, t.at(n >> 2)); }, split(true));
    }
    for (const int n : {64, 128, 256, 512}) {
        expectSection(
            "cftmdl2", n, [&](auto* a) { cftmdl2(n, a, t.at(n)); }, split(false));
    }
    const double* const w = t.w.data();
    for (const int n : {64, 128}) {
        expectSection(
            "cftfx41", n, [&](auto* a) { cftfx41(n, a, t.nw, w); }, quarters(true));
    }
    for (const int n : {256, 512}) {
        expectSection(
            "cftleaf", n, [&](auto* a) { cftleaf(n, 1, a, t.nw, w); }, quarters(true));
        expectSection(
            "cftleaf 0", n, [&](auto* a) { cftleaf(n, 0, a, t.nw, w); }, quarters(false));
    }
    expectSection(
        "cftrec4", 2048, [&](auto* a) { cftrec4(2048, a, t.nw, w); }, quarters(true));
}
