#include "pipeline/UnpackBuffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "pipeline/StageFixture.h"

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// A block of 8 x 8 with a tile of 3 x 2 inside and an output of 5 x 4 that the tile is part of.
template <class Pixel, std::size_t N>
struct UnpackCase {
    using Element = typename BlockLayout<N>::Element;
    static constexpr int kSide = 8;

    explicit UnpackCase(PF_PixelFormat format)
        : output(5, 4, format, {.rowPadding = 16}),
          frame(host),
          filter(frame.hostData, kSide),
          buffer(frame.hostData) {
        output.fillWithPattern();
        buffer.resize(2 * kSide * kSide);
        for (std::size_t i = 0; i < buffer.size(); ++i) {
            for (std::size_t c = 0; c < BlockLayout<N>::kChannels; ++c) buffer[i][c] = kNan;
        }
    }

    // The real element under output pixel (x, y).
    Element& at(int x, int y) {
        return buffer[2 * static_cast<std::size_t>((y - block.top) * kSide + x - block.left)];
    }

    void run() {
        UnpackBuffer<Pixel, N> unpack(frame.info, filter, buffer, tile, block, *output.layer());
        for (int i = 0; i < 6; ++i) ASSERT_EQ(unpack.iterate(0, i, 6), 0);
        EXPECT_EQ(output.damage(), "");
    }

    const Pixel& pixel(int x, int y) const { return output.row<Pixel>(y)[x]; }

    headless::Host host;
    headless::World output;
    StageFixture frame;
    Filter<N> filter;
    AEO::Vector<Element> buffer;
    iRect tile{2, 1, 5, 3};
    iRect block{0, -2, 8, 6};
};

// One layer: red, green, blue, alpha.
void setColour(ET::vecT<double, 4>& element, double red, double green, double blue, double alpha) {
    element[0] = red;
    element[1] = green;
    element[2] = blue;
    element[3] = alpha;
}

template <class Pixel>
void fillTile(UnpackCase<Pixel, 1>& unpack) {
    for (int i = 0; i < 6; ++i) setColour(unpack.at(2 + i % 3, 1 + i / 3), 0.5, 0.5, 0.5, 1.0);
}

TEST(UnpackBuffer, TruncatesAndClampsBytesAndTurnsNanToZero) {
    UnpackCase<PF_Pixel, 1> unpack(PF_PixelFormat_ARGB32);
    fillTile(unpack);
    setColour(unpack.at(2, 1), 254.99 / 255.0, 1.5, -0.1, 1.0);
    setColour(unpack.at(4, 2), 0.25, kNan, 0.75, 0.5);
    setColour(unpack.at(3, 2), 0.5, 0.5, 0.5, kNan);
    unpack.run();
    const PF_Pixel first = unpack.pixel(2, 1);
    EXPECT_EQ(first.red, 254);
    EXPECT_EQ(first.green, 255);
    EXPECT_EQ(first.blue, 0);
    EXPECT_EQ(first.alpha, 255);
    const PF_Pixel last = unpack.pixel(4, 2);  // colours over an alpha of 0.5
    EXPECT_EQ(last.red, 127);
    EXPECT_EQ(last.green, 0);
    EXPECT_EQ(last.blue, 255);
    EXPECT_EQ(last.alpha, 127);
    // An alpha that is not a number fails its test, and the colour stays as it is.
    EXPECT_EQ(unpack.pixel(3, 2).alpha, 0);
    EXPECT_EQ(unpack.pixel(3, 2).red, 127);
}

TEST(UnpackBuffer, SixteenBitsGoTo32768) {
    UnpackCase<PF_Pixel16, 1> deep(PF_PixelFormat_ARGB64);
    fillTile(deep);
    setColour(deep.at(2, 1), 1.0, 32767.9 / 32768.0, 7.0, 1.25);
    deep.run();
    EXPECT_EQ(deep.pixel(2, 1).red, 26214);  // 1 / 1.25
    EXPECT_EQ(deep.pixel(2, 1).green, 26214);
    EXPECT_EQ(deep.pixel(2, 1).blue, 32768);
    EXPECT_EQ(deep.pixel(2, 1).alpha, 32768);
    EXPECT_EQ(deep.pixel(4, 1).red, 16384);
}

TEST(UnpackBuffer, FloatIsNotClamped) {
    UnpackCase<PF_PixelFloat, 1> open(PF_PixelFormat_ARGB128);
    fillTile(open);
    setColour(open.at(2, 1), 5.0, -2.0, kNan, 1.25);
    setColour(open.at(3, 1), 5.0, -2.0, 1.0, -0.5);  // the colour stays where alpha isn't positive
    open.run();
    EXPECT_EQ(open.pixel(2, 1).red, 4.0F);
    EXPECT_EQ(open.pixel(2, 1).green, -1.6F);
    EXPECT_TRUE(std::isnan(open.pixel(2, 1).blue));
    EXPECT_EQ(open.pixel(2, 1).alpha, 1.25F);
    EXPECT_EQ(open.pixel(3, 1).red, 5.0F);
    EXPECT_EQ(open.pixel(3, 1).alpha, -0.5F);
}

TEST(UnpackBuffer, WritesTheTileAlone) {
    UnpackCase<PF_PixelFloat, 1> unpack(PF_PixelFormat_ARGB128);
    fillTile(unpack);
    unpack.run();
    for (int y = 0; y < unpack.output.height(); ++y) {
        for (int x = 0; x < unpack.output.width(); ++x) {
            const bool inside = x >= 2 && x < 5 && y >= 1 && y < 3;
            // What nobody writes is not a number.
            EXPECT_EQ(std::isnan(unpack.pixel(x, y).red), !inside) << x << ", " << y;
        }
    }
}

TEST(UnpackBuffer, CompressionUndoesTheExpansion) {
    UnpackCase<PF_PixelFloat, 1> unpack(PF_PixelFormat_ARGB128);
    for (const double exposure : {10.0, 0.0, 30.0, -3.0}) {
        for (const double threshold : {0.0, 0.4, 1.0}) {
            unpack.frame.info.exposure = exposure;
            unpack.frame.info.threshold = threshold;
            const double alpha = 0.8;
            for (int i = 0; i < 6; ++i) {
                const double value = -0.1 + 0.23 * i;
                const double light =
                    value < threshold || exposure == 0.0
                        ? value
                        : std::expm1((value - threshold) * exposure) / exposure + threshold;
                setColour(unpack.at(2 + i % 3, 1 + i / 3), light * alpha, 0.0, 0.0, alpha);
            }
            unpack.run();
            for (int i = 0; i < 6; ++i) {
                const PF_PixelFloat& pixel = unpack.pixel(2 + i % 3, 1 + i / 3);
                EXPECT_NEAR(pixel.red, -0.1 + 0.23 * i, 1e-6) << exposure << ", " << threshold;
                EXPECT_EQ(pixel.alpha, 0.8F);  // not part of the curve
            }
        }
    }
    // Beyond what an expanded value can reach there is no way back.
    unpack.frame.info.exposure = -2.0;
    unpack.frame.info.threshold = 0.0;
    setColour(unpack.at(2, 1), 0.75, 0.25, 0.25, 1.0);
    unpack.run();
    EXPECT_TRUE(std::isnan(unpack.pixel(2, 1).red));
    EXPECT_NEAR(unpack.pixel(2, 1).green, std::log(0.5) / -2.0, 1e-6);
}

// Three layers, five channels each: red, green, blue, alpha, weight.
constexpr double kLayers[3][5] = {
    {0.30, 0.10, 0.20, 0.40, 0.5}, {0.05, 0.25, 0.15, 0.35, 0.3}, {0.50, 0.45, 0.60, 0.70, 0.1}};

void setLayers(UnpackCase<PF_PixelFloat, 3>& unpack, double alphaSign, double weightSign) {
    for (int i = 0; i < 6; ++i) {
        auto& element = unpack.at(2 + i % 3, 1 + i / 3);
        for (std::size_t l = 0; l < 3; ++l) {
            for (std::size_t c = 0; c < 5; ++c) element[5 * l + c] = kLayers[l][c];
            element[5 * l + 3] *= alphaSign;
            element[5 * l + 4] *= weightSign;
        }
    }
}

TEST(UnpackBuffer, NormalTakesEachLayerInProportionToItsWeight) {
    UnpackCase<PF_PixelFloat, 3> unpack(PF_PixelFormat_ARGB128);
    unpack.frame.info.compositeMode = kCompositeNormal;
    setLayers(unpack, 1.0, 1.0);
    unpack.run();
    const double alpha = 0.5 * 0.40 + 0.3 * 0.35 + 0.1 * 0.70;
    const double red = 0.5 * 0.30 + 0.3 * 0.05 + 0.1 * 0.50;
    const double blue = 0.5 * 0.20 + 0.3 * 0.15 + 0.1 * 0.60;
    EXPECT_FLOAT_EQ(unpack.pixel(3, 2).red, static_cast<float>(red / alpha));
    EXPECT_FLOAT_EQ(unpack.pixel(3, 2).blue, static_cast<float>(blue / alpha));
    EXPECT_FLOAT_EQ(unpack.pixel(3, 2).alpha, static_cast<float>(alpha / 0.9));
}

TEST(UnpackBuffer, SplitAddsTheLightOfAllLayers) {
    UnpackCase<PF_PixelFloat, 3> unpack(PF_PixelFormat_ARGB128);
    unpack.frame.info.compositeMode = kCompositeSplit;
    setLayers(unpack, 1.0, 1.0);
    unpack.run();
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).green, static_cast<float>(0.80 / 1.45));
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).alpha, static_cast<float>(1.45 / 0.9));

    // Neither division without something to divide by.
    setLayers(unpack, -1.0, 1.0);
    unpack.run();
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).green, 0.80F);
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).alpha, static_cast<float>(-1.45 / 0.9));
    setLayers(unpack, 1.0, -1.0);
    unpack.run();
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).green, static_cast<float>(0.80 / 1.45));
    EXPECT_FLOAT_EQ(unpack.pixel(4, 1).alpha, 1.45F);
}

TEST(UnpackBuffer, AnUnknownModeWritesNothing) {
    UnpackCase<PF_PixelFloat, 3> unpack(PF_PixelFormat_ARGB128);
    unpack.frame.info.compositeMode = 3;
    setLayers(unpack, 1.0, 1.0);
    unpack.run();
    EXPECT_TRUE(unpack.output.holdsPatternOnly());
}

}  // namespace
