#include "pipeline/Multiply.h"

#include <gtest/gtest.h>

#include <complex>
#include <random>
#include <vector>

#include "pipeline/StageFixture.h"

namespace {

using Complex = std::complex<double>;

constexpr std::size_t kWidth = 8;
constexpr std::size_t kHeight = 4;
constexpr std::size_t kArea = kWidth * kHeight;

// Elements of `channels` lanes as complex numbers: sample p, channel c at [p * channels + c].
template <class Elements>
std::vector<Complex> toComplex(const Elements& elements, std::size_t channels) {
    std::vector<Complex> numbers;
    for (std::size_t p = 0; p < kArea; ++p) {
        for (std::size_t c = 0; c < channels; ++c) {
            numbers.emplace_back(elements[2 * p][c], elements[2 * p + 1][c]);
        }
    }
    return numbers;
}

template <class Elements>
void fillRandomly(Elements& elements, std::size_t channels, unsigned seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> number(-2.0, 2.0);
    for (std::size_t i = 0; i < 2 * kArea; ++i) {
        for (std::size_t c = 0; c < channels; ++c) elements[i][c] = number(generator);
    }
}

// Which layer's kernel and which channel of the stored block make channel `c` of the result.
struct Source {
    std::size_t layer;
    std::size_t channel;
};
Source sourceOf(std::size_t layers, int mode, std::size_t c) {
    if (layers == 1) return {0, c};
    const std::size_t layer = c / 5;
    if (mode == 2) return {layer, c};
    if (c % 5 < 4) return {layer, c % 5};
    return {layer > 0 ? layer - 1 : 0, 4 + layer};
}

template <std::size_t N, int K>
void compareWithComplexArithmetic() {
    constexpr std::size_t kChannels = BlockLayout<N>::kChannels;
    headless::Host host;
    StageFixture frame(host);
    Filter<N> filter(frame.hostData, kWidth);  // larger than the rectangle needs
    AEO::Vector<typename BlockLayout<N>::Element> block(frame.hostData);
    block.resize(2 * kArea);
    fillRandomly(filter, N, 1);
    fillRandomly(block, kChannels, 2);
    const auto kernels = toComplex(filter, N);
    const auto before = toComplex(block, kChannels);

    const iRect rect{-3, 5, -3 + static_cast<int>(kWidth), 5 + static_cast<int>(kHeight)};
    Multiply<N, K> multiply(rect, filter, block);
    for (int i = 0; i < static_cast<int>(kArea); ++i) {
        ASSERT_EQ(multiply.iterate(0, i, static_cast<int>(kArea)), 0);
    }

    const auto after = toComplex(block, kChannels);
    for (std::size_t y = 0; y < kHeight; ++y) {
        for (std::size_t x = 0; x < kWidth; ++x) {
            const std::size_t p = y * kWidth + x;
            const std::size_t q = (kHeight - y) % kHeight * kWidth + (kWidth - x) % kWidth;
            for (std::size_t c = 0; c < kChannels; ++c) {
                const Source source = sourceOf(N, K, c);
                const Complex expected =
                    kernels[q * N + source.layer] * before[p * kChannels + source.channel];
                ASSERT_NEAR(std::abs(after[p * kChannels + c] - expected), 0.0, 1e-13)
                    << "N " << N << ", mode " << K << ", channel " << c << " at " << x << ", " << y;
            }
        }
    }
}

TEST(Multiply, MatchesComplexArithmeticOnACopy) {
    compareWithComplexArithmetic<1, 1>();
    compareWithComplexArithmetic<1, 2>();
    compareWithComplexArithmetic<2, 1>();
    compareWithComplexArithmetic<2, 2>();
    compareWithComplexArithmetic<3, 1>();
    compareWithComplexArithmetic<3, 2>();
    compareWithComplexArithmetic<16, 1>();
    compareWithComplexArithmetic<16, 2>();
}

}  // namespace
