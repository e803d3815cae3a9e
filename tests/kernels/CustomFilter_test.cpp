// SPDX-License-Identifier: Apache-2.0
#include "kernels/CustomFilter.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "kernels/NormalizeFilter.h"
#include "support/StageFixture.h"
#include "support/TestPictures.h"

namespace {

constexpr std::size_t kArea = 64 * 64;

double channelOf(const PF_PixelFloat& p, int channel) {
    if (channel == 5) return double{p.red} + p.green + p.blue;
    return std::array{p.red, p.green, p.blue, p.alpha}[static_cast<std::size_t>(channel - 1)];
}

class CustomFilterTest : public testing::Test {
protected:
    // Where `picture` is sampled for the kernel offset (dx, dy): mirrored through its centre, and
    // scaled so that the longer side spans the diameter of the layer with this factor.
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
        const int channel = frame.info.customChannel;
        const double tolerance = (channel == 5 ? 3.0 : 1.0) * Format<Pixel>::kTolerance;
        for (int i = 0; i < 64 * 64; ++i) {
            const int dx = i % 64 < 32 ? i % 64 : i % 64 - 64;
            const int dy = i / 64 < 32 ? i / 64 : i / 64 - 64;
            for (std::size_t l = 0; l < N; ++l) {
                const double factor =
                    N == 1 ? 1.0 : std::max(1e-5, (N - 1.0 - static_cast<double>(l)) / (N - 1.0));
                const PF_PixelFloat mean = boxMean(picture, boxFor(picture, dx, dy, factor));
                const auto element = 2 * static_cast<std::size_t>(i);
                ASSERT_NEAR(bank[element][l], channelOf(mean, channel) * Format<Pixel>::kTop,
                            tolerance)
                    << N << " layers, lane " << l << " at " << dx << ", " << dy;
                ASSERT_EQ(bank[element + 1][l], 0.0);
            }
        }
    }

    // A builder of the raw kernels of `picture`.
    template <class Pixel, std::size_t N>
    CustomFilter<Pixel, Filter<N>> sample(headless::World& picture, Filter<N>& bank) {
        custom = {frame.info.suites, picture.layer()};
        return {frame.context, &frame.in_data, frame.info, bank, custom};
    }

    // Samples `picture`, resets and normalises the kernels, and returns the factors. `exactly` also
    // compares the raw kernels.
    template <class Pixel, std::size_t N>
    std::vector<double> build(headless::World& picture, Filter<N>& bank, bool exactly = false) {
        auto builder = sample<Pixel>(picture, bank);
        EXPECT_EQ(AEO::Iterator::IterationT(frame.context, builder, kArea), 0);
        if (exactly) expectKernels<Pixel, N>(picture, bank);
        builder.resetZeroFilter();
        typename Filter<N>::Element factors;
        for (std::size_t l = 0; l < N; ++l) factors[l] = builder.getNormalizeFactor(l);
        NormalizeFilter<Filter<N>> stage(frame.context, bank, factors);
        EXPECT_EQ(AEO::Iterator::IterationT(frame.context, stage, kArea), 0);
        return {&factors[0], &factors[0] + N};
    }

    template <class Pixel, std::size_t N>
    void checkPicture(int width, int height, int channel) {
        SCOPED_TRACE(channel);
        frame.info.customChannel = channel;
        headless::World picture(width, height, Format<Pixel>::kCode, {.rowPadding = 16});
        fillUnevenly(picture);
        Filter<N> bank(frame.context, 64);
        build<Pixel>(picture, bank, true);
        for (std::size_t l = 0; l < N; ++l) EXPECT_NEAR(total(bank, l) * kArea, 1.0, 1e-12) << l;
    }

    template <std::size_t N>
    static double total(const Filter<N>& bank, std::size_t lane) {
        double sum = 0.0;
        for (std::size_t i = 0; i < kArea; ++i) sum += bank[2 * i][lane];
        return sum;
    }

    template <std::size_t N>
    static void expectUnitImpulse(const Filter<N>& bank, std::size_t lane) {
        EXPECT_EQ(bank[0][lane], 1.0 / kArea);
        EXPECT_EQ(total(bank, lane), 1.0 / kArea) << "a sample besides the origin";
    }

    headless::Host host{{.threads = 2}};
    StageFixture frame{host};
    CustomFilterInfo custom{};
};

TEST_F(CustomFilterTest, ShrinksThePictureToTheRadiusOfEachLayer) {
    frame.info.radius = 6.5;
    checkPicture<PF_PixelFloat, 1>(40, 24, kChannelAlpha);
    checkPicture<PF_PixelFloat, 3>(23, 31, kChannelGreen);
    checkPicture<PF_PixelFloat, 16>(17, 12, kChannelBlue);
    frame.info.pixelAspect = 2.0;  // multiplies positions and divides boxes
    checkPicture<PF_PixelFloat, 3>(40, 40, kChannelRed);
    frame.info.pixelAspect = 0.0;  // leaves nothing of the horizontal offset
    checkPicture<PF_PixelFloat, 2>(40, 40, kChannelRed);
}

TEST_F(CustomFilterTest, ReadsEachChannelOfEachPixelDepth) {
    frame.info.radius = 5.0;
    for (const int channel : {1, 2, 3, 4, 5}) {
        checkPicture<PF_Pixel, 2>(20, 14, channel);
        checkPicture<PF_Pixel16, 2>(20, 14, channel);
        checkPicture<PF_PixelFloat, 2>(20, 14, channel);
    }
}

TEST_F(CustomFilterTest, TurnsEmptyLayersIntoUnitImpulses) {
    // A hole wider than the largest sampling box empties only the sharpest layer.
    headless::World ring(270, 270, PF_PixelFormat_ARGB128);
    ring.set(0, 135, {1.0f, 0.0f, 0.0f, 0.0f});
    Filter<2> bank(frame.context, 64);
    build<PF_PixelFloat>(ring, bank);
    expectUnitImpulse(bank, 1);
    EXPECT_EQ(bank[0][0], 0.0);
    EXPECT_NEAR(total(bank, 0) * kArea, 1.0, 1e-12);

    headless::World blank(50, 50, PF_PixelFormat_ARGB32);
    build<PF_Pixel>(blank, bank);
    for (std::size_t l = 0; l < 2; ++l) expectUnitImpulse(bank, l);
}

TEST_F(CustomFilterTest, LeavesKernelsWithoutAPositiveTotalAlone) {
    frame.info.customChannel = kChannelRed;
    for (const float value : {-2.0f, std::numeric_limits<float>::quiet_NaN()}) {
        headless::World picture(40, 40, PF_PixelFormat_ARGB128);
        picture.fill({1.0f, value, 0.0f, 0.0f});
        Filter<2> bank(frame.context, 64);
        EXPECT_THAT(build<PF_PixelFloat>(picture, bank), testing::Each(1.0));
        EXPECT_FALSE(bank[0][0] > 0.0) << "reset to the unit impulse";
    }
}

TEST_F(CustomFilterTest, ReportsTheStatusOfTheLastLane) {
    headless::World picture(8, 8, PF_PixelFormat_ARGB32);
    Filter<2> bank(frame.context, 64);
    auto builder = sample<PF_Pixel>(picture, bank);
    for (const int call : {1, 2}) {
        host.failAt(headless::Operation::kAreaSample, call, 512);
        EXPECT_EQ(builder.iterate(0, 0, kArea), call == 2 ? 512 : 0);
    }
}

// What a sampling suite in place of the host's receives.
PF_SampPB told;
std::array<PF_Fixed, 2> toldPosition;

TEST_F(CustomFilterTest, PassesOnlyTheBoxToTheSampler) {
    static const PF_SamplingFloatSuite1 kRecorder{
        nullptr, nullptr,
        [](PF_ProgPtr, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_PixelFloat*) -> PF_Err {
            told = *params;
            toldPosition = {x, y};
            return 0;
        }};
    SPBasicSuite basic{};
    basic.AcquireSuite = [](const char*, std::int32_t, const void** suite) -> SPErr {
        *suite = &kRecorder;
        return 0;
    };
    basic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr { return 0; };
    AEGP_SuiteHandler suites(&basic);
    frame.info.suites = &suites;
    frame.info.radius = 10.0;
    frame.info.pixelAspect = 2.0;
    headless::World picture(100, 50, PF_PixelFormat_ARGB128);  // a scale of 5
    Filter<1> bank(frame.context, 64);
    sample<PF_PixelFloat>(picture, bank).iterate(0, 2 * 64 + 3, kArea);
    EXPECT_EQ(toldPosition, (std::array{20 * 65536, 15 * 65536}));
    EXPECT_EQ(told.x_radius, 81920);   // 1.25
    EXPECT_EQ(told.y_radius, 163840);  // 2.5
    EXPECT_EQ(told.area, 536870912) << "the product of the two in 32 bits";
    EXPECT_EQ(told.src, picture.layer());
    const PF_SampPB zero{};
    EXPECT_EQ(std::memcmp(&told.samp_behave, &zero.samp_behave,
                          sizeof told - offsetof(PF_SampPB, samp_behave)),
              0);
}

}  // namespace
