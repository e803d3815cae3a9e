#include "headless/World.h"

#include <gtest/gtest.h>

#include <cmath>

#include "headless/Host.h"

namespace headless {
namespace {

TEST(World, DamageFindsWritesOutsideTheRows) {
    World world(4, 4, PF_PixelFormat_ARGB128, {0, 0, 16});
    world.fill({1, 1, 1, 1});
    EXPECT_EQ(world.damage(), "");
    for (const std::ptrdiff_t offset : {-1, 4 * 16, 4 * world.rowBytes()}) {
        std::byte& stray = world.bytesOfRow(0)[offset];
        const std::byte before = stray;
        stray ^= std::byte{1};
        EXPECT_NE(world.damage(), "") << offset;
        stray = before;
    }
    EXPECT_TRUE(std::isnan(world.row<PF_PixelFloat>(0)[4].red)) << "padding is no number";
}

TEST(World, PixelsSurviveARoundTripAndAreHeldInRange) {
    World eight(1, 1, PF_PixelFormat_ARGB32);
    for (int v = 0; v <= 255; ++v) {
        const auto c = static_cast<A_u_char>(v);
        eight.row<PF_Pixel>(0)[0] = {c, c, c, c};
        eight.set(0, 0, eight.get(0, 0));
        ASSERT_EQ(eight.row<PF_Pixel>(0)[0].red, c);
    }
    World sixteen(1, 1, PF_PixelFormat_ARGB64);
    for (int v = 0; v <= 32768; ++v) {
        const auto c = static_cast<std::uint16_t>(v);
        sixteen.row<PF_Pixel16>(0)[0] = {c, c, c, c};
        sixteen.set(0, 0, sixteen.get(0, 0));
        ASSERT_EQ(sixteen.row<PF_Pixel16>(0)[0].red, c);
    }
    eight.set(0, 0, {NAN, -3, 7, 0.5F});
    EXPECT_EQ(eight.row<PF_Pixel>(0)[0].alpha, 0);
    EXPECT_EQ(eight.row<PF_Pixel>(0)[0].red, 0);
    EXPECT_EQ(eight.row<PF_Pixel>(0)[0].green, 255);
    EXPECT_EQ(eight.row<PF_Pixel>(0)[0].blue, 128);
}

TEST(Reduce, HalfIsTheMeanOfFourWithColourByAlpha) {
    World source(3, 2, PF_PixelFormat_ARGB128);
    source.fill({0, 9, 9, 9});
    source.set(0, 0, {1, 0.2F, 0, 4});
    source.set(1, 1, {0.5F, 0.8F, 0, 1});
    source.set(2, 0, {1, 0.25F, 0.5F, 0.75F});
    ASSERT_EQ(reducedSize(3, {1, 2}), 2);
    const auto half = reduce(source, {1, 2}, {1, 2}, {0, 0, 2, 1}, PF_PixelFormat_ARGB128);
    EXPECT_FLOAT_EQ(half->get(0, 0).alpha, 1.5F / 4);
    EXPECT_FLOAT_EQ(half->get(0, 0).red, (0.2F + 0.5F * 0.8F) / 1.5F);
    EXPECT_FLOAT_EQ(half->get(0, 0).blue, (4 + 0.5F) / 1.5F);
    // The last column covers one pixel only.
    EXPECT_FLOAT_EQ(half->get(1, 0).alpha, 0.5F);
    EXPECT_FLOAT_EQ(half->get(1, 0).green, 0.5F);
}

TEST(Reduce, UnevenFactorsCoverPixelsInPart) {
    World source(3, 1, PF_PixelFormat_ARGB128);
    for (int x = 0; x < 3; ++x) source.set(x, 0, {1, static_cast<float>(x), 0, 0});
    const auto reduced = reduce(source, {2, 3}, {1, 1}, {0, 0, 2, 1}, PF_PixelFormat_ARGB128);
    EXPECT_FLOAT_EQ(reduced->get(0, 0).red, 0.5F / 1.5F);
    EXPECT_FLOAT_EQ(reduced->get(1, 0).red, 2.5F / 1.5F);
}

TEST(Reduce, RefusesWhatIsNotThereOrGrows) {
    const World source(4, 4, PF_PixelFormat_ARGB128);
    EXPECT_THROW(reduce(source, {1, 1}, {1, 1}, {0, 0, 5, 4}, PF_PixelFormat_ARGB32),
                 std::invalid_argument);
    EXPECT_THROW(reducedSize(10, {3, 2}), std::invalid_argument);
}

TEST(Copy, MovesRowsOrRectanglesAsFarAsBothReach) {
    Host host;
    const PF_InData in = host.makeInData();
    World source(4, 3, PF_PixelFormat_ARGB32, {0, 0, 16});
    World target(3, 5, PF_PixelFormat_ARGB32);
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            source.row<PF_Pixel>(y)[x] = {255, static_cast<A_u_char>(10 * y + x), 0, 0};
        }
    }
    EXPECT_EQ(in.utils->copy(in.effect_ref, source.layer(), target.layer(), nullptr, nullptr), 0);
    EXPECT_EQ(target.row<PF_Pixel>(2)[2].red, 22);
    EXPECT_EQ(target.row<PF_Pixel>(3)[0].alpha, 0);
    PF_Rect from{3, 1, 9, 9};
    PF_Rect to{-4, 4, 3, 5};
    EXPECT_EQ(in.utils->copy(in.effect_ref, source.layer(), target.layer(), &from, &to), 0);
    EXPECT_EQ(target.row<PF_Pixel>(4)[0].red, 13);
    EXPECT_EQ(target.row<PF_Pixel>(4)[1].red, 0);
    EXPECT_EQ(target.damage(), "");

    World other(3, 5, PF_PixelFormat_ARGB64);
    EXPECT_NE(in.utils->copy(in.effect_ref, source.layer(), other.layer(), nullptr, nullptr), 0);
}

}  // namespace
}  // namespace headless
