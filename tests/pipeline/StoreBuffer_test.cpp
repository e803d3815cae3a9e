#include "pipeline/StoreBuffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include "pipeline/StageFixture.h"

namespace {

constexpr PF_PixelFormat formatOf(PF_Pixel) {
    return PF_PixelFormat_ARGB32;
}
constexpr PF_PixelFormat formatOf(PF_Pixel16) {
    return PF_PixelFormat_ARGB64;
}
constexpr PF_PixelFormat formatOf(PF_PixelFloat) {
    return PF_PixelFormat_ARGB128;
}

constexpr double topOf(PF_Pixel) {
    return 255.0;
}
constexpr double topOf(PF_Pixel16) {
    return 32768.0;
}
constexpr double topOf(PF_PixelFloat) {
    return 1.0;
}

// The curve by another road than the stage's.
double expand(double value, double exposure, double threshold) {
    if (exposure == 0.0 || value < threshold) return value;
    return threshold + std::expm1(exposure * (value - threshold)) / exposure;
}

// An input of 7 x 5 with random pixels, some transparent, and a block of 16 x 16 around and beyond
// it, whose elements start as NaN so that one that is not written shows.
template <class Pixel, std::size_t N>
struct StoreCase {
    static constexpr int kSide = 16;
    static constexpr int kArea = kSide * kSide;
    using Element = typename BlockLayout<N>::Element;

    StoreCase()
        : input(7, 5, formatOf(Pixel{}), {.originX = 3, .originY = -2, .rowPadding = 16}),
          output(12, 9, formatOf(Pixel{}), {.originX = 1, .originY = 4}),
          frame(host),
          depth(frame.hostData),
          edge(frame.hostData),
          block(frame.hostData) {
        frame.show(input, output);
        std::mt19937 generator(7);
        std::uniform_real_distribution<float> number(-0.2F, 1.3F);
        for (int y = 0; y < input.height(); ++y) {
            for (int x = 0; x < input.width(); ++x) {
                const float alpha = (x + y) % 5 ? number(generator) : 0.0F;
                input.set(x, y, {alpha, number(generator), number(generator), number(generator)});
            }
        }
        block.resize(2 * kArea);
        for (std::size_t i = 0; i < block.size(); ++i) {
            for (std::size_t c = 0; c < BlockLayout<N>::kChannels; ++c) {
                block[i][c] = std::numeric_limits<double>::quiet_NaN();
            }
        }
    }

    void run() {
        StoreBuffer<Pixel, N> store(frame.info, *input.layer(), depth, edge, rect, block);
        for (int i = 0; i < kArea; ++i) ASSERT_EQ(store.iterate(0, i, kArea), 0);
    }

    // Red, green, blue, alpha that pixel (col, row) of the block has to get.
    std::array<double, 4> expected(int col, int row, double exposure) const {
        int x = rect.left + col + 1 - 3;
        int y = rect.top + row + 4 - -2;
        if (frame.info.repeatEdge) {
            x = std::clamp(x, 0, input.width() - 1);
            y = std::clamp(y, 0, input.height() - 1);
        } else if (x < 0 || y < 0 || x >= input.width() || y >= input.height()) {
            return {};
        }
        const Pixel& pixel = input.row<Pixel>(y)[x];
        const double top = topOf(Pixel{});
        const double alpha = static_cast<double>(pixel.alpha) / top;
        const auto light = [&](auto channel) {
            const double value = static_cast<double>(channel) / top;
            return expand(value, exposure, frame.info.threshold) * alpha;
        };
        return {light(pixel.red), light(pixel.green), light(pixel.blue), alpha};
    }

    const Element& real(int col, int row) const {
        return block[2 * static_cast<std::size_t>(row * kSide + col)];
    }

    headless::Host host;
    headless::World input;
    headless::World output;
    StageFixture frame;
    AEO::Vector<float> depth;
    AEO::Vector<float> edge;
    AEO::Vector<Element> block;
    iRect rect{-4, -9, -4 + kSide, -9 + kSide};
};

void expectClose(double actual, double expected) {
    ASSERT_NEAR(actual, expected, 1e-12 * std::max(1.0, std::fabs(expected)));
}

template <class Pixel>
class StoreBufferPixels : public testing::Test {};
using PixelTypes = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(StoreBufferPixels, PixelTypes);

TYPED_TEST(StoreBufferPixels, PlacesExpandsAndPremultiplies) {
    StoreCase<TypeParam, 1> store;
    RenderInfo& info = store.frame.info;
    for (const bool repeat : {false, true}) {
        for (const double exposure : {0.0, 10.0, 30.0, -4.0}) {
            for (const double threshold : {0.0, 0.5, 1.0}) {
                info.repeatEdge = repeat;
                info.exposure = exposure;
                info.threshold = threshold;
                store.run();
                for (int i = 0; i < store.kArea; ++i) {
                    const int col = i % store.kSide;
                    const int row = i / store.kSide;
                    const auto expected = store.expected(col, row, exposure);
                    for (std::size_t c = 0; c < 4; ++c) {
                        expectClose(store.real(col, row)[c], expected[c]);
                        ASSERT_EQ(store.block[2 * static_cast<std::size_t>(i) + 1][c], 0.0);
                    }
                }
            }
        }
    }
}

TEST(StoreBuffer, CurveOfTheDefaultsTakesWhiteTo2202AndLeavesAlphaAlone) {
    StoreCase<PF_Pixel16, 1> store;
    store.input.fill({1.0F, 1.0F, 0.0F, 0.5F});
    store.frame.info.exposure = 10.0;
    store.run();
    const auto& centre = store.real(7, 5);
    EXPECT_NEAR(centre[0], 2202.5, 0.1);
    EXPECT_EQ(centre[1], 0.0);
    EXPECT_NEAR(centre[2], (std::exp(5.0) - 1.0) / 10.0, 1e-9);
    EXPECT_EQ(centre[3], 1.0);
}

// Depth values that spread the pixels over all three layers; weights also where the input ends.
template <std::size_t N>
void fillDepth(AEO::Vector<float>& depth, std::size_t area) {
    depth.resize(area);
    for (std::size_t i = 0; i < area; ++i) {
        depth[i] = static_cast<float>(i % 17) / 16.0F;
    }
}

void checkLayouts(std::int32_t mode) {
    StoreCase<PF_PixelFloat, 3> store;
    fillDepth<3>(store.depth, static_cast<std::size_t>(store.kArea));
    store.frame.info.compositeMode = mode;
    store.frame.info.exposure = 3.0;
    store.run();
    StoreBuffer<PF_PixelFloat, 3> assignment(store.frame.info, *store.input.layer(), store.depth,
                                             store.edge, store.rect, store.block);
    for (int i = 0; i < store.kArea; ++i) {
        const int col = i % store.kSide;
        const int row = i / store.kSide;
        const auto colour = store.expected(col, row, 3.0);
        DepthReturn<3> d;
        assignment.depthIterate(i, d);
        std::array<double, 15> expected{};
        for (std::size_t c = 0; c < 4; ++c) {
            if (mode != kCompositeSplit) expected[c] = colour[c];
            for (std::size_t l = 0; l < 3 && mode == kCompositeSplit; ++l) {
                expected[5 * l + c] = d[l] * colour[c];
            }
        }
        for (std::size_t l = 0; l < 3; ++l) {
            if (mode == kCompositeNormal) expected[4 + l] = d[l];
            if (mode == kCompositeSplit) expected[5 * l + 4] = d[l];
        }
        for (std::size_t c = 0; c < 15; ++c) {
            expectClose(store.real(col, row)[c], expected[c]);
            ASSERT_EQ(store.block[2 * static_cast<std::size_t>(i) + 1][c], 0.0);
        }
    }
}

TEST(StoreBuffer, LaysTheLayersOutByCompositeMode) {
    checkLayouts(kCompositeNormal);
    checkLayouts(kCompositeSplit);
    checkLayouts(3);  // no known mode: the colour alone
}

TEST(StoreBuffer, DepthEdgesTakeTheExpansionAway) {
    StoreCase<PF_PixelFloat, 2> store;
    store.frame.info.repeatEdge = true;
    store.frame.info.exposure = 6.0;
    fillDepth<2>(store.depth, static_cast<std::size_t>(store.kArea));
    store.edge.resize(static_cast<std::size_t>(store.kArea));
    // With a gain of 10 above 0.1: whole below, half in between, nothing from 0.2 on.
    const std::array<float, 4> strengths{0.05F, 0.1F, 0.15F, 0.9F};
    const std::array<double, 4> kept{1.0, 1.0, 0.5, 0.0};
    for (std::size_t i = 0; i < store.edge.size(); ++i) store.edge[i] = strengths[i % 4];
    store.frame.info.edgeLeak = 10.0;
    store.frame.info.edgeThreshold = 0.1;
    store.run();
    for (int i = 0; i < store.kArea; ++i) {
        const int col = i % store.kSide;
        const int row = i / store.kSide;
        const auto expected = store.expected(col, row, 6.0 * kept[static_cast<std::size_t>(i) % 4]);
        for (std::size_t c = 0; c < 4; ++c) {
            ASSERT_NEAR(store.real(col, row)[c], expected[c], 1e-4) << "pixel " << i;
        }
    }
}

}  // namespace
