// SPDX-License-Identifier: Apache-2.0
// The parts of a frame in slabs, alone.
#include <gmock/gmock.h>

#include "occlusion/BlurScale.h"
#include "occlusion/Pyramid.h"
#include "occlusion/Slabs.h"
#include "occlusion/Stage.h"

namespace test {
namespace {

using occlusion::Known;
using testing::ElementsAre;
using testing::FloatNear;
using testing::IsEmpty;

TEST(Slabs, ShareEachDepthSmoothly) {
    const occlusion::Slabs slabs({0.2F, 0.5F, 0.9F});
    std::vector<float> before(slabs.count(), 0.0F);
    before[0] = 1.0F;
    for (int i = 0; i <= 1000; ++i) {
        const float nearness = static_cast<float>(i) / 1000.0F;
        float sum = 0.0F;
        for (std::size_t slab = 0; slab < slabs.count(); ++slab) {
            const float share = slabs.share(slab, nearness);
            EXPECT_GE(share, 0.0F);
            EXPECT_NEAR(share, before[slab], 0.05F) << "slab " << slab << " at " << nearness;
            before[slab] = share;
            sum += share;
        }
        EXPECT_NEAR(sum, 1.0F, 1e-6F);
    }
    EXPECT_EQ(before, (std::vector{0.0F, 0.0F, 0.0F, 1.0F}));
}

// What is known stays, gaps take what is around, and nothing unknown gets in.
TEST(Pyramid, ContinuesWhatIsKnown) {
    constexpr int kWidth = 37;
    constexpr int kHeight = 22;
    const auto inGap = [](int x, int y) { return x > 8 && x < 28 && y > 4 && y < 18; };
    const auto valueAt = [](int x) { return x < 18 ? 0.3F : 0.9F; };
    const occlusion::Pyramid pyramid(kWidth, kHeight, 2, [&](int x, int y) {
        if (inGap(x, y)) return Known{};
        return Known{.colour = {valueAt(x), 0, 0, 1},
                     .radius = 5.0F,
                     .presence = 1.0F,
                     .colourWeight = 1.0F,
                     .radiusWeight = 1.0F,
                     .presenceWeight = 1.0F};
    });
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const occlusion::Continued there = pyramid.at(x, y);
            EXPECT_NEAR(there.radius, 5.0F, 1e-4F) << x << ", " << y;
            EXPECT_NEAR(there.presence, 1.0F, 1e-5F);
            EXPECT_NEAR(there.colour[3], 1.0F, 1e-5F);
            EXPECT_GE(there.colour[0], 0.2999F);
            EXPECT_LE(there.colour[0], 0.9001F);
        }
    }
    EXPECT_LT(pyramid.at(10, 11).colour[0], 0.45F) << "near the left rim of the gap";
    EXPECT_GT(pyramid.at(26, 11).colour[0], 0.75F) << "near the right one";
}

// A lamp at the rim of a gap lights what is right beside it at most.
TEST(Pyramid, DoesNotSmearLamps) {
    const occlusion::Pyramid pyramid(64, 64, 1, [](int x, int y) {
        if (x >= 32) return Known{};
        const float light = x >= 29 && y >= 30 && y < 33 ? 40.0F : 0.2F;
        return Known{.colour = {light, light, light, 1.0F}, .colourWeight = 1.0F};
    });
    EXPECT_LT(pyramid.at(37, 31).colour[0], 1.0F);
    EXPECT_LT(pyramid.at(42, 31).colour[0], 0.3F);
}

class Census : public Stage {
protected:
    template <class Nearness>
    occlusion::DepthCensus of(Nearness nearness) {
        set("Blur Radius", 20.0);
        setMap(paintMap(96, 64, nearness));
        const occlusion::View view = occlusion::viewOf(effect.parameters(), 96, 64, 1.0);
        return occlusion::DepthCensus({&view, 1});
    }
};

// Few pixels far from all others, and a thing of few pixels.
TEST_F(Census, SeesSmallThingsAndNoStrayPixels) {
    const auto stray = of([](int x, int y) {
        return x == 5 && y == 5 ? 1.0 : x < 48 ? 0.02 : 0.1;
    });
    EXPECT_THAT(stray.choose(8), ElementsAre(FloatNear(0.06F, 0.01F)));
    const auto small = of([](int x, int y) { return x < 3 && y < 4 ? 0.9 : 0.1; });
    EXPECT_THAT(small.choose(8), ElementsAre(FloatNear(0.5F, 0.02F)));
}

// Three cards: the bounds lie in the middle between them.
TEST_F(Census, FindsTheGapsBetweenThings) {
    const auto census = of([](int x, int) { return x < 30 ? 0.1 : x < 60 ? 0.5 : 0.9; });
    EXPECT_THAT(census.choose(8), ElementsAre(FloatNear(0.3F, 0.02F), FloatNear(0.7F, 0.02F)));
    EXPECT_EQ(census.choose(2).size(), 1U);
    EXPECT_EQ(census.chooseExactly(3).size(), 2U);
}

TEST_F(Census, CutsNoSurfaceForNothing) {
    EXPECT_THAT(of([](int x, int) { return x / 96.0; }).choose(8), IsEmpty()) << "a slanted plane";
    EXPECT_THAT(of([](int, int) { return 0.4; }).choose(8), IsEmpty()) << "one depth";
    EXPECT_THAT(of([](int, int) { return 0.4; }).chooseExactly(4), IsEmpty());
    // A thing on a floor: the floor is cut, but in as few places as there are outlines.
    const auto standing = of([](int x, int y) { return x > 40 && y < 50 ? 0.8 : y / 64.0 * 0.9; });
    EXPECT_LE(standing.choose(8).size(), 3U);
}

TEST_F(Census, RadiiAreThoseOfTheEffectsLayers) {
    set("Blur Radius", 20.0);
    set("Focal Distance", 0.25);
    const occlusion::BlurScale scale(effect.parameters(), 1.0);
    EXPECT_EQ(scale.signedRadius(0.25F), 0.0F);
    EXPECT_NEAR(scale.signedRadius(1.0F), 20.5F, 0.05F) << "half a pixel is added";
    EXPECT_NEAR(scale.signedRadius(0.0F), -20.5F / 3.0F, 0.5F) << "the scale reaches less far back";
}

}  // namespace
}  // namespace test
