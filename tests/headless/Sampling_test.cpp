#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <random>

#include "headless/Host.h"
#include "platform/Suites.h"

namespace headless {
namespace {

constexpr double kOne = 65536.0;

// Straight colour: alpha, red, green, blue.
using Mean = std::array<double, 4>;

// How much of [i - 0.5, i + 0.5] lies in [center - radius, center + radius].
double overlap(double center, double radius, int i) {
    return std::max(0.0, std::min(center + radius, i + 0.5) - std::max(center - radius, i - 0.5));
}

// Every pixel of the picture by its own weight in x and y; slow and plain.
template <class Pixel, class Weight>
Mean weightedMean(const World& world, double area, Weight&& weight) {
    Mean sum{};
    for (int y = 0; y < world.height(); ++y) {
        for (int x = 0; x < world.width(); ++x) {
            const Pixel& p = world.row<Pixel>(y)[x];
            const double a = weight(x, y) * p.alpha;
            const double terms[] = {a, a * p.red, a * p.green, a * p.blue};
            for (std::size_t c = 0; c < 4; ++c) sum[c] += terms[c];
        }
    }
    if (sum[0] == 0) return {};
    return {sum[0] / area, sum[1] / sum[0], sum[2] / sum[0], sum[3] / sum[0]};
}

template <class Pixel>
Mean areaReference(const World& world, int x, int y, int rx, int ry) {
    const double area = 4 * (rx / kOne) * (ry / kOne);
    return weightedMean<Pixel>(world, area, [&](int i, int j) {
        return overlap(x / kOne, rx / kOne, i) * overlap(y / kOne, ry / kOne, j);
    });
}

template <class Pixel>
Mean bilinearReference(const World& world, int x, int y) {
    return weightedMean<Pixel>(world, 1.0, [&](int i, int j) {
        return std::max(0.0, 1 - std::abs(x / kOne - i)) *
               std::max(0.0, 1 - std::abs(y / kOne - j));
    });
}

template <class P>
struct Form;
template <>
struct Form<PF_Pixel> {
    using Suite = PF_Sampling8Suite1;
    static constexpr const char* name = kPFSampling8Suite;
    static constexpr PF_PixelFormat format = PF_PixelFormat_ARGB32;
    static constexpr double tolerance = 0.5 + 1e-9;  // rounded to the nearest
};
template <>
struct Form<PF_Pixel16> {
    using Suite = PF_Sampling16Suite1;
    static constexpr const char* name = kPFSampling16Suite;
    static constexpr PF_PixelFormat format = PF_PixelFormat_ARGB64;
    static constexpr double tolerance = 0.5 + 1e-6;
};
template <>
struct Form<PF_PixelFloat> {
    using Suite = PF_SamplingFloatSuite1;
    static constexpr const char* name = kPFSamplingFloatSuite;
    static constexpr PF_PixelFormat format = PF_PixelFormat_ARGB128;
    static constexpr double tolerance = 1e-6;
};

template <class Pixel>
class SamplingTest : public testing::Test {
protected:
    using Suite = typename Form<Pixel>::Suite;

    SamplingTest() {
        const void* table = nullptr;
        in.pica_basicP->AcquireSuite(Form<Pixel>::name, 1, &table);
        suite = static_cast<const Suite*>(table);
        std::uniform_real_distribution<float> channel(0, 1);
        for (int y = 0; y < world.height(); ++y) {
            for (int x = 0; x < world.width(); ++x) {
                // A fifth of the pixels has no alpha, and their colour must never show.
                const float alpha = channel(random) < 0.2F ? 0 : channel(random);
                world.set(x, y, {alpha, channel(random), channel(random), channel(random)});
            }
        }
    }
    ~SamplingTest() override {
        in.pica_basicP->ReleaseSuite(Form<Pixel>::name, 1);
        EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
    }

    Pixel area(int x, int y, int rx, int ry) { return sample(suite->area_sample, x, y, rx, ry); }
    Pixel bilinear(int x, int y) { return sample(suite->subpixel_sample, x, y, 0, 0); }

    template <class Function>
    Pixel sample(Function function, int x, int y, int rx, int ry) {
        PF_SampPB params{};
        params.src = world.layer();
        params.x_radius = rx;
        params.y_radius = ry;
        Pixel pixel;
        std::memset(&pixel, 0x5A, sizeof pixel);
        EXPECT_EQ(function(in.effect_ref, x, y, &params, &pixel), PF_Err_NONE);
        return pixel;
    }

    static void expectNear(const Pixel& p, const Mean& want, const std::string& where) {
        const Mean got{double(p.alpha), double(p.red), double(p.green), double(p.blue)};
        EXPECT_THAT(got, testing::Pointwise(testing::DoubleNear(Form<Pixel>::tolerance), want))
            << where;
    }

    static bool isZero(const Pixel& p) {
        return p.alpha == 0 && p.red == 0 && p.green == 0 && p.blue == 0;
    }

    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    PF_InData in = host.makeInData();
    const Suite* suite = nullptr;
    World world{13, 9, Form<Pixel>::format, {0, 0, 32}};
    std::mt19937 random{42};
};

using Pixels = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;
TYPED_TEST_SUITE(SamplingTest, Pixels);

TYPED_TEST(SamplingTest, AgreesWithTheWeightedMeansAtRandomPlaces) {
    std::uniform_int_distribution<int> x(-3 * 65536, 16 * 65536);
    std::uniform_int_distribution<int> y(-3 * 65536, 12 * 65536);
    std::uniform_int_distribution<int> radius(1, 6 * 65536);
    for (int round = 0; round < 500; ++round) {
        const int at[] = {x(this->random), y(this->random), radius(this->random),
                          radius(this->random)};
        this->expectNear(this->area(at[0], at[1], at[2], at[3]),
                         areaReference<TypeParam>(this->world, at[0], at[1], at[2], at[3]),
                         testing::PrintToString(at));
        this->expectNear(this->bilinear(at[0], at[1]),
                         bilinearReference<TypeParam>(this->world, at[0], at[1]),
                         testing::PrintToString(at));
    }
}

TYPED_TEST(SamplingTest, WholePositionsReadExactlyOnePixel) {
    for (int y = 0; y < this->world.height(); ++y) {
        for (int x = 0; x < this->world.width(); ++x) {
            const TypeParam& pixel = this->world.template row<TypeParam>(y)[x];
            const TypeParam want = pixel.alpha == 0 ? TypeParam{} : pixel;
            for (const int radius : {0, 1, 32768}) {
                const TypeParam got = this->area(x * 65536, y * 65536, radius, radius);
                ASSERT_EQ(std::memcmp(&got, &want, sizeof got), 0) << x << ", " << y;
            }
            const TypeParam got = this->bilinear(x * 65536, y * 65536);
            ASSERT_EQ(std::memcmp(&got, &want, sizeof got), 0) << x << ", " << y;
        }
    }
}

TYPED_TEST(SamplingTest, LargestBoxesAndFarthestPositions) {
    const int most = 128 * 65536;
    this->expectNear(this->area(6 * 65536, 4 * 65536, most, most),
                     areaReference<TypeParam>(this->world, 6 * 65536, 4 * 65536, most, most),
                     "all of the picture");
    for (const int far : {INT32_MIN, INT32_MAX}) {
        EXPECT_TRUE(this->isZero(this->area(far, 0, most, most)));
        EXPECT_TRUE(this->isZero(this->area(0, far, 1, most)));
        EXPECT_TRUE(this->isZero(this->bilinear(far, far)));
    }
    // A box that ends where the picture begins has nothing of it.
    EXPECT_TRUE(this->isZero(this->area(-65536, 0, 32768, 32768)));
    EXPECT_TRUE(this->isZero(this->area(13 * 65536, 0, 32768, 32768)));
}

TEST(Sampling, RefusesWhatItCannotRead) {
    Host host;
    const PF_InData in = host.makeInData();
    const void* table = nullptr;
    in.pica_basicP->AcquireSuite(kPFSamplingFloatSuite, 1, &table);
    const auto* suite = static_cast<const PF_SamplingFloatSuite1*>(table);
    World narrow(4, 4, PF_PixelFormat_ARGB32);
    PF_SampPB params{};
    PF_PixelFloat pixel{};
    EXPECT_NE(suite->area_sample(in.effect_ref, 0, 0, &params, &pixel), 0) << "no source";
    params.src = narrow.layer();
    EXPECT_NE(suite->area_sample(in.effect_ref, 0, 0, &params, &pixel), 0) << "8-bit rows";
    EXPECT_NE(suite->subpixel_sample(nullptr, 0, 0, &params, &pixel), 0) << "no effect_ref";
    params.x_radius = 128 * 65536 + 1;
    EXPECT_NE(suite->area_sample(in.effect_ref, 0, 0, &params, &pixel), 0) << "radius too large";
    in.pica_basicP->ReleaseSuite(kPFSamplingFloatSuite, 1);
}

}  // namespace
}  // namespace headless
