// SPDX-License-Identifier: Apache-2.0
#include "pipeline/UnpackBuffer.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "support/StageFixture.h"
#include "support/TestPictures.h"

namespace {

using testing::FieldsAre;
using testing::IsNan;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// A block of 8 x 8 with a tile of 3 x 2 inside and an output of 5 x 4 that the tile is part of.
// What is not set in the block, and not written in a float output, is NaN.
template <class Pixel, std::size_t N>
struct UnpackCase {
    using Element = typename BlockLayout<N>::Element;
    static constexpr int kSide = 8;

    UnpackCase() {
        output.fillWithPattern();
        buffer.resize(2 * kSide * kSide);
        for (std::size_t i = 0; i < buffer.size(); ++i) {
            for (std::size_t c = 0; c < BlockLayout<N>::kChannels; ++c) buffer[i][c] = kNan;
        }
    }

    // Sets channels of the element under output pixel (x, y): red, green, blue, alpha, or for each
    // layer these and its weight.
    void set(int x, int y, const std::vector<double>& channels, std::size_t from = 0) {
        Element& element =
            buffer[2 * static_cast<std::size_t>((y - block.top) * kSide + x - block.left)];
        std::copy(channels.begin(), channels.end(), &element[from]);
    }

    void run() {
        UnpackBuffer<Pixel, N> unpack(frame.info, filter, buffer, tile, block, *output.layer());
        for (int i = 0; i < 6; ++i) ASSERT_EQ(unpack.iterate(0, i, 6), 0);
        EXPECT_EQ(output.damage(), "");
    }

    const Pixel& pixel(int x, int y) const { return output.row<Pixel>(y)[x]; }

    headless::Host host;
    headless::World output{5, 4, Format<Pixel>::kCode, {.rowPadding = 16}};
    StageFixture frame{host};
    Filter<N> filter{frame.context, kSide};
    AEO::Vector<Element> buffer{frame.context};
    iRect tile{2, 1, 5, 3};
    iRect block{0, -2, 8, 6};
};

// Records are alpha, red, green, blue.
TEST(UnpackBuffer, IntegersAreTruncatedAndClampedAndNanIsZero) {
    UnpackCase<PF_Pixel, 1> bytes;
    bytes.set(2, 1, {254.99 / 255.0, 1.5, -0.1, 1.0});
    bytes.set(4, 2, {0.25, kNan, 0.75, 0.5});  // over an alpha of 0.5
    bytes.set(3, 2, {0.5, 0.5, 0.5, kNan});    // not positive: the colour stays
    bytes.run();
    EXPECT_THAT(bytes.pixel(2, 1), FieldsAre(255, 254, 255, 0));
    EXPECT_THAT(bytes.pixel(4, 2), FieldsAre(127, 127, 0, 255));
    EXPECT_THAT(bytes.pixel(3, 2), FieldsAre(0, 127, 127, 127));
}

TEST(UnpackBuffer, SixteenBitsGoTo32768) {
    UnpackCase<PF_Pixel16, 1> deep;
    deep.set(2, 1, {1.0, 32767.9 / 32768.0, 7.0, 1.25});
    deep.run();
    EXPECT_THAT(deep.pixel(2, 1), FieldsAre(32768, 26214, 26214, 32768));
}

TEST(UnpackBuffer, FloatIsNotClampedAndOnlyTheTileIsWritten) {
    UnpackCase<PF_PixelFloat, 1> open;
    for (int i = 0; i < 6; ++i) open.set(2 + i % 3, 1 + i / 3, {0.5, 0.5, 0.5, 1.0});
    open.set(2, 1, {5.0, -2.0, kNan, 1.25});
    open.set(3, 1, {5.0, -2.0, 1.0, -0.5});  // the colour stays where alpha isn't positive
    open.run();
    EXPECT_THAT(open.pixel(2, 1), FieldsAre(1.25F, 4.0F, -1.6F, IsNan()));
    EXPECT_THAT(open.pixel(3, 1), FieldsAre(-0.5F, 5.0F, -2.0F, 1.0F));
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 5; ++x) {
            const bool inside = x >= 2 && y >= 1 && y < 3;
            EXPECT_EQ(std::isnan(open.pixel(x, y).alpha), !inside) << x << ", " << y;
        }
    }
}

TEST(UnpackBuffer, LightBeyondTheRangeOfTheCurveIsNan) {
    UnpackCase<PF_PixelFloat, 1> unpack;
    unpack.frame.info.exposure = -2.0;
    unpack.set(2, 1, {0.75, 0.25, 0.25, 1.0});
    unpack.run();
    EXPECT_TRUE(std::isnan(unpack.pixel(2, 1).red));
    EXPECT_NEAR(unpack.pixel(2, 1).green, std::log(0.5) / -2.0, 1e-6);
}

// Three layers with the same light, in Split.
TEST(UnpackBuffer, LayersAreNotDividedByWhatIsNotPositive) {
    UnpackCase<PF_PixelFloat, 3> unpack;
    unpack.frame.info.compositeMode = kCompositeSplit;
    for (const double sign : {1.0, -1.0}) {
        const std::vector<double> layer{0.5, 0.5, 0.25, sign * 0.5, -sign * 0.25};
        for (int l = 0; l < 3; ++l) unpack.set(4, 1, layer, static_cast<std::size_t>(5 * l));
        unpack.run();
        EXPECT_EQ(unpack.pixel(4, 1).red, sign > 0 ? 1.0F : 1.5F);
        EXPECT_EQ(unpack.pixel(4, 1).alpha, sign > 0 ? 1.5F : -2.0F);
    }
}

}  // namespace
