#include "headless/Sampling.h"

#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <random>

#include "headless/Host.h"
#include "headless/Pictures.h"
#include "platform/Suites.h"

namespace headless {
namespace {

const char* suiteName(PF_Pixel) {
    return kPFSampling8Suite;
}
const char* suiteName(PF_Pixel16) {
    return kPFSampling16Suite;
}
const char* suiteName(PF_PixelFloat) {
    return kPFSamplingFloatSuite;
}

template <class Pixel>
class Sampling : public testing::Test {
protected:
    Sampling() {
        const void* table = nullptr;
        in.pica_basicP->AcquireSuite(suiteName(Pixel{}), 1, &table);
        std::memcpy(suite, table, sizeof suite);
        std::uniform_real_distribution<float> channel(0, 1);
        for (int i = 0; i < 13 * 9; ++i) {
            // A fifth of the pixels has no alpha, and their colour must never show.
            const float alpha = channel(random) < 0.2F ? 0 : channel(random);
            world.set(i % 13, i / 13, {alpha, channel(random), channel(random), channel(random)});
        }
    }

    void expectMean(int kind, int x, int y, int rx, int ry) {
        PF_SampPB params{};
        params.src = world.layer();
        params.x_radius = rx;
        params.y_radius = ry;
        Pixel p;
        std::memset(&p, 0x5A, sizeof p);
        EXPECT_EQ(suite[kind](in.effect_ref, x, y, &params, &p), PF_Err_NONE);
        // Between pixel centres, the bilinear weights are those of a box as large as a pixel.
        const double halfX = kind == kPoint ? 0.5 : asRadius(rx / 65536.0);
        const double halfY = kind == kPoint ? 0.5 : asRadius(ry / 65536.0);
        const PF_PixelFloat mean = boxMean(world, {x / 65536.0, y / 65536.0, halfX, halfY});
        const std::array<double, 4> got{double(p.alpha), double(p.red), double(p.green),
                                        double(p.blue)};
        std::array<double, 4> want{mean.alpha, mean.red, mean.green, mean.blue};
        for (double& channel : want) channel *= Format<Pixel>::kTop;
        EXPECT_THAT(got, testing::Pointwise(testing::DoubleNear(Format<Pixel>::kTolerance), want))
            << x << ", " << y << " by " << rx << ", " << ry;
    }

    static constexpr int kPoint = 1;
    static constexpr int kArea = 2;
    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    PF_InData in = host.makeInData();
    // The suites are alike: three functions of one type, for the nearest pixel, points and boxes.
    PF_Err (*suite[3])(PF_ProgPtr, PF_Fixed, PF_Fixed, const PF_SampPB*, Pixel*);
    World world{13, 9, Format<Pixel>::kCode, {0, 0, 32}};
    std::mt19937 random{42};
};
TYPED_TEST_SUITE(Sampling, PixelTypes);

TYPED_TEST(Sampling, AgreesWithTheMeansOverBoxes) {
    std::uniform_int_distribution<int> x(-3 * 65536, 16 * 65536);
    std::uniform_int_distribution<int> y(-3 * 65536, 12 * 65536);
    std::uniform_int_distribution<int> radius(1, 6 * 65536);
    for (int round = 0; round < 500; ++round) {
        const int px = x(this->random), py = y(this->random);
        this->expectMean(this->kArea, px, py, radius(this->random), radius(this->random));
        this->expectMean(this->kPoint, px, py, 0, 0);
    }
    // Whole pixels, everything, and boxes far outside or just beside the picture.
    for (const int r : {0, 1, 32768, 128 * 65536}) {
        for (const int at : {INT32_MIN, -65536, 0, 4 * 65536, 13 * 65536, INT32_MAX}) {
            this->expectMean(this->kArea, at, at, r, r);
            this->expectMean(this->kPoint, at, 0, 0, 0);
        }
    }
}

}  // namespace
}  // namespace headless
