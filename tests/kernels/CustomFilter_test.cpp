#include "kernels/CustomFilter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "kernels/BoxMean.h"
#include "kernels/NormalizeFilter.h"
#include "pipeline/StageFixture.h"

namespace {

template <class Pixel>
struct Format;
template <>
struct Format<PF_Pixel> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB32;
    static constexpr double kScale = 255.0;
    static constexpr double kTolerance = 0.501;  // the host rounds to whole steps
};
template <>
struct Format<PF_Pixel16> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB64;
    static constexpr double kScale = 32768.0;
    static constexpr double kTolerance = 0.51;
};
template <>
struct Format<PF_PixelFloat> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB128;
    static constexpr double kScale = 1.0;
    static constexpr double kTolerance = 1e-6;
};

double channelOf(const PF_PixelFloat& p, int channel) {
    switch (channel) {
        case 1:
            return p.red;
        case 2:
            return p.green;
        case 3:
            return p.blue;
        case 5:
            return double{p.red} + p.green + p.blue;
        default:
            return p.alpha;
    }
}

class CustomFilterTest : public testing::Test {
protected:
    static headless::HostOptions options() {
        headless::HostOptions options;
        options.threads = 2;
        return options;
    }

    void TearDown() override { EXPECT_EQ(host.memory().current, 0u); }

    // Where the picture of `info` is read for the kernel offset (dx, dy): mirrored through its
    // centre, so that the longer side spans the diameter of the layer with this factor.
    Box boxFor(const headless::World& picture, int dx, int dy, double factor) const {
        const double scale =
            std::max(picture.width(), picture.height()) / (2.0 * frame.info.radius);
        const double aspect = frame.info.pixelAspect;
        return {asFixed(picture.width() / 2.0 - aspect * dx * scale / factor),
                asFixed(picture.height() / 2.0 - dy * scale / factor),
                asRadius(asRadius(scale / 2.0 / aspect) / factor),
                asRadius(asRadius(scale / 2.0) / factor)};
    }

    // Compares all samples of the raw kernels with a direct evaluation.
    template <class Pixel, std::size_t N>
    void expectKernels(const headless::World& picture, const Filter<N>& bank) {
        const int size = static_cast<int>(bank.size);
        const double sum = frame.info.customChannel == kChannelAverage ? 3.0 : 1.0;
        for (int i = 0; i < size * size; ++i) {
            const int dx = i % size < size / 2 ? i % size : i % size - size;
            const int dy = i / size < size / 2 ? i / size : i / size - size;
            for (std::size_t l = 0; l < N; ++l) {
                const double factor =
                    N == 1 ? 1.0 : std::max(1e-5, (N - 1.0 - static_cast<double>(l)) / (N - 1.0));
                const PF_PixelFloat mean = boxMean(picture, boxFor(picture, dx, dy, factor));
                const double expected =
                    channelOf(mean, frame.info.customChannel) * Format<Pixel>::kScale;
                const auto element = 2 * static_cast<std::size_t>(i);
                ASSERT_NEAR(bank[element][l], expected, sum * Format<Pixel>::kTolerance)
                    << N << " layers, lane " << l << " at " << dx << ", " << dy;
                ASSERT_EQ(bank[element + 1][l], 0.0);
            }
        }
    }

    template <class Pixel, std::size_t N>
    void checkPicture(int width, int height, int channel) {
        SCOPED_TRACE(channel);
        frame.info.customChannel = channel;
        headless::World picture(width, height, Format<Pixel>::kCode, {.rowPadding = 16});
        fillUnevenly(picture);
        Filter<N> bank(frame.hostData, 64);
        build<Pixel>(picture, bank, [&] { expectKernels<Pixel, N>(picture, bank); });
        expectUnitGain(bank);
    }

    // Samples `picture`, lets `inspect` see the raw kernels, resets and normalises them. Gives the
    // factors.
    template <class Pixel, std::size_t N>
    std::vector<double> build(
        headless::World& picture, Filter<N>& bank, const std::function<void()>& inspect = [] {}) {
        CustomFilterInfo custom{frame.info.suites, picture.layer()};
        CustomFilter<Pixel, Filter<N>> builder(frame.hostData, &frame.inData, frame.info, bank,
                                               custom);
        EXPECT_EQ(AEO::Iterator::IterationT(frame.hostData, builder, 64 * 64), 0);
        inspect();
        builder.resetZeroFilter();
        typename Filter<N>::Element factors;
        std::vector<double> result;
        for (std::size_t l = 0; l < N; ++l) {
            factors[l] = builder.getNormalizeFactor(l);
            result.push_back(factors[l]);
        }
        NormalizeFilter<Filter<N>> stage(frame.hostData, bank, factors);
        EXPECT_EQ(AEO::Iterator::IterationT(frame.hostData, stage, 64 * 64), 0);
        return result;
    }

    template <std::size_t N>
    static double total(const Filter<N>& bank, std::size_t lane) {
        double sum = 0.0;
        for (std::size_t i = 0; i < bank.size * bank.size; ++i) sum += bank[2 * i][lane];
        return sum;
    }

    template <std::size_t N>
    static void expectUnitGain(const Filter<N>& bank) {
        for (std::size_t l = 0; l < N; ++l) EXPECT_NEAR(total(bank, l) * 64 * 64, 1.0, 1e-12) << l;
    }

    template <std::size_t N>
    static void expectUnitImpulse(const Filter<N>& bank, std::size_t lane) {
        EXPECT_EQ(bank[0][lane], 1.0 / (64 * 64));
        EXPECT_EQ(total(bank, lane), 1.0 / (64 * 64)) << "a sample besides the origin";
    }

    headless::Host host{options()};
    StageFixture frame{host};
};

TEST_F(CustomFilterTest, ShrinksThePictureToTheRadiusOfEachLayer) {
    frame.info.radius = 6.5;
    checkPicture<PF_PixelFloat, 1>(40, 24, kChannelAlpha);
    checkPicture<PF_PixelFloat, 2>(23, 31, kChannelRed);
    checkPicture<PF_PixelFloat, 3>(40, 24, kChannelGreen);
    checkPicture<PF_PixelFloat, 16>(17, 12, kChannelBlue);
}

TEST_F(CustomFilterTest, ReadsEachChannelOfEachPixelDepth) {
    frame.info.radius = 5.0;
    for (const int channel : {1, 2, 3, 4, 5}) {
        checkPicture<PF_Pixel, 2>(20, 14, channel);
        checkPicture<PF_Pixel16, 2>(20, 14, channel);
        checkPicture<PF_PixelFloat, 2>(20, 14, channel);
    }
}

TEST_F(CustomFilterTest, StretchesPositionsButNotBoxesWithThePixelAspect) {
    frame.info.radius = 8.0;
    frame.info.pixelAspect = 2.0;
    checkPicture<PF_PixelFloat, 3>(40, 40, kChannelRed);

    // An aspect of 0 leaves nothing of the horizontal offset.
    frame.info.pixelAspect = 0.0;
    headless::World picture(40, 40, PF_PixelFormat_ARGB128);
    fillUnevenly(picture);
    Filter<2> bank(frame.hostData, 64);
    build<PF_PixelFloat>(picture, bank);
    expectUnitGain(bank);
    for (std::size_t i = 0; i < 64 * 64; ++i) {
        ASSERT_EQ(bank[2 * i][0], bank[2 * (i - i % 64)][0]) << i;
    }
}

TEST_F(CustomFilterTest, TurnsEmptyLayersIntoUnitImpulses) {
    headless::World blank(50, 50, PF_PixelFormat_ARGB32);
    blank.fill({1.0f, 0.0f, 1.0f, 1.0f});
    frame.info.customChannel = kChannelRed;
    Filter<3> passing(frame.hostData, 64);
    build<PF_Pixel>(blank, passing);
    for (std::size_t l = 0; l < 3; ++l) expectUnitImpulse(passing, l);

    // A hole wider than the largest sampling box empties the sharpest layer alone.
    frame.info.customChannel = kChannelAlpha;
    headless::World ring(270, 270, PF_PixelFormat_ARGB128);
    ring.set(0, 135, {1.0f, 0.0f, 0.0f, 0.0f});
    Filter<2> bank(frame.hostData, 64);
    build<PF_PixelFloat>(ring, bank);
    expectUnitImpulse(bank, 1);
    EXPECT_EQ(bank[0][0], 0.0);
    EXPECT_NEAR(total(bank, 0) * 64 * 64, 1.0, 1e-12);
}

TEST_F(CustomFilterTest, MakesTheSharpestLayerAPoint) {
    headless::World picture(400, 300, PF_PixelFormat_ARGB64);
    picture.fill({0.5f, 0.5f, 0.5f, 0.5f});
    Filter<2> bank(frame.hostData, 64);
    build<PF_Pixel16>(picture, bank);
    expectUnitImpulse(bank, 1);
    EXPECT_LT(bank[0][0], bank[0][1]);
}

TEST_F(CustomFilterTest, LeavesKernelsAloneThatHaveNoPositiveTotal) {
    frame.info.customChannel = kChannelRed;
    for (const float value : {-2.0f, std::numeric_limits<float>::quiet_NaN()}) {
        headless::World picture(40, 40, PF_PixelFormat_ARGB128);
        picture.fill({1.0f, value, 0.0f, 0.0f});
        Filter<2> bank(frame.hostData, 64);
        EXPECT_EQ(build<PF_PixelFloat>(picture, bank), (std::vector<double>{1.0, 1.0}));
        // Equal, or both not a number.
        EXPECT_EQ(std::isnan(bank[0][0]), std::isnan(value));
        EXPECT_FALSE(bank[0][0] > 0.0) << "reset to the unit impulse";
    }
}

TEST_F(CustomFilterTest, ReportsWhatTheHostRefuses) {
    headless::World picture(8, 8, PF_PixelFormat_ARGB32);
    CustomFilterInfo custom{frame.info.suites, picture.layer()};
    Filter<2> bank(frame.hostData, 64);
    using Builder = CustomFilter<PF_Pixel, Filter<2>>;
    const auto make = [&] {
        return std::make_unique<Builder>(frame.hostData, &frame.inData, frame.info, bank, custom);
    };

    host.failures().failSuite(kPFSampling8Suite);
    const auto missing = make();
    int thrown = 0;
    try {
        AEO::Iterator::IterationT(frame.hostData, *missing, 64 * 64);
    } catch (int code) {
        thrown = code;
    }
    EXPECT_EQ(thrown, PF_Err_BAD_CALLBACK_PARAM);
    host.failures().clear();

    // Only the status of the last lane counts.
    const auto builder = make();
    host.failAt(headless::Operation::AreaSample, 1, 512);
    EXPECT_EQ(builder->iterate(0, 0, 64 * 64), 0);
    host.failAt(headless::Operation::AreaSample, 2, 512);
    EXPECT_EQ(builder->iterate(0, 0, 64 * 64), 512);

    // Without totals nothing is sampled.
    host.failAt(headless::Operation::GetNumThreads, 1, 513);
    EXPECT_EQ(make()->iterate(0, 0, 64 * 64), 513);
    host.setMemoryLimit(host.memory().current);
    const auto starved = make();
    EXPECT_EQ(starved->iterate(0, 0, 64 * 64), PF_Err_OUT_OF_MEMORY);
    starved->resetZeroFilter();
    EXPECT_EQ(starved->getNormalizeFactor(0), 1.0);
}

}  // namespace
