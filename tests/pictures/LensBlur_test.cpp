// SPDX-License-Identifier: Apache-2.0
// The controls that are chosen for a lens.
#include "pictures/depth/LensBlur.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "pictures/depth/LensRange.h"

namespace pictures {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// 85 mm at f/1.7, 50 mm of aperture, on a sensor of 36 mm with 1000 pixels; distances in metres.
LensView view(double focus, bool breathing = false) {
    return {{85.0, 1.7, focus * 1000.0, breathing}, 0.036, 1000.0};
}

TEST(Lens, BlursByTheFormulasOfTheThinLens) {
    // A f / d x |1 - d / D| and A f / (d - f) x |1 - d / D|.
    const Lens lens = view(2.0).lens;
    EXPECT_NEAR(lens.blurDiameter(1000.0), 50.0 * 85.0 / 2000.0, 1e-12);
    EXPECT_NEAR(lens.blurDiameter(kInfinity), 50.0 * 85.0 / 2000.0, 1e-12);
    EXPECT_EQ(lens.blurDiameter(2000.0), 0.0);
    const Lens moved = view(2.0, true).lens;
    EXPECT_NEAR(moved.blurDiameter(8000.0), 50.0 * 85.0 / 1915.0 * 0.75, 1e-12);
    const Lens far = view(kInfinity, true).lens;
    EXPECT_NEAR(far.blurDiameter(1000.0), 4.25, 1e-12);
    EXPECT_EQ(far.blurDiameter(kInfinity), 0.0);
}

// The mean of the squared distances of 0.01-pixel samples of a disc, each counted at its pixel.
double sampledMoment(double radius) {
    double sum = 0.0;
    double count = 0.0;
    for (double y = -radius + 0.005; y < radius; y += 0.01) {
        for (double x = -radius + 0.005; x < radius; x += 0.01) {
            if (x * x + y * y > radius * radius) continue;
            const double column = std::round(x);
            const double row = std::round(y);
            sum += column * column + row * row;
            count += 1.0;
        }
    }
    return sum / count;
}

TEST(LensLayers, KnowTheMomentOfADiscInPixels) {
    for (const double radius : {0.4, 0.7, 1.0, 1.6, 3.3}) {
        EXPECT_NEAR(discMoment(radius), sampledMoment(radius), 0.01) << radius;
    }
    EXPECT_NEAR(discMoment(200.0), 20000.0 + 1.0 / 6.0, 0.01);
    for (const double radius : {1.0, 5.0, 200.0}) {
        const LensLayers layers(16, LensLayers::fullRadiusFor(radius));
        EXPECT_NEAR(layers.largestRadius(), radius, 1e-6);
        EXPECT_EQ(layers.distanceFromFocus(0.0), 0.0);
        EXPECT_NEAR(layers.distanceFromFocus(2.0 * radius), 1.0 - 0.5 / 16, 1e-12);
    }
}

TEST(LensBlur, FitsTheScaleToTheSpanAndKeepsToTheLargestRadius) {
    struct Case {
        double focus;
        DistanceSpan span;
        double near, far;
        double reach;
    };
    // The radius is 59,028 pixels times the difference of 1/distance in 1/mm.
    const double gain = 50.0 * 85.0 / 2.0 / 0.036 / 1000.0;
    const Case cases[] = {{2.0, {1.0, kInfinity}, 1.0, kInfinity, gain / 2},
                          {2.0, {1.5, 4.0}, 1.5, 4.0, gain / 4},
                          {2.0, {4.0, 8.0}, 2.0, 8.0, gain * 0.375},
                          {2.0, {1.0, 1.6}, 1.0, 2.0, gain / 2},
                          {kInfinity, {1.0, kInfinity}, 1.0, kInfinity, gain},
                          {2.0, {2.0, 2.0}, 2.0, 2.0, 0.0},
                          {2.0, {0.1, kInfinity}, 1.0 / (0.5 + 500 / gain), kInfinity, 500}};
    for (const auto& [focus, span, near, far, reach] : cases) {
        const LensView lens = view(focus);
        const LensBlur blur(lens, span, {.layers = 16});
        SCOPED_TRACE(testing::Message() << focus << ", " << span.nearest << ", " << span.farthest);
        EXPECT_NEAR(1.0 / blur.near(), 1.0 / near, 1e-9);
        EXPECT_NEAR(1.0 / blur.far(), 1.0 / far, 1e-9);
        EXPECT_NEAR(blur.reach(), reach, 1e-6);
        EXPECT_LE(blur.blurRadius(), 500.0);
        EXPECT_NEAR(blur.position(focus), blur.focus(), 1e-12);
        EXPECT_GE(blur.focus(), 0.0);
        EXPECT_LE(blur.focus(), 1.0);
        // Nearer is never less, and beyond the range the blur is that of its ends.
        double before = blur.position(kInfinity);
        for (double inverse = 0.0; inverse < 12.0; inverse += 0.01) {
            const double position = blur.position(1.0 / inverse);
            EXPECT_GE(position, before);
            before = position;
        }
        if (reach == 0.0) continue;
        EXPECT_NEAR(blur.position(near * 0.5), blur.position(near), 1e-9);
        EXPECT_NEAR(blur.position(far * 2.0), blur.position(far), 1e-9);
    }
}

// A map with these distances, one pixel each.
DepthSource mapOf(const std::vector<float>& distances) {
    DepthSource source;
    source.kind = DepthKind::kDistance;
    source.picture.grey = true;
    for (const float distance : distances) {
        source.picture.pixels.insert(source.picture.pixels.end(),
                                     {distance, distance, distance, 1});
        source.range.add(static_cast<double>(distance), source.kind);
    }
    return source;
}

TEST(LensRange, LeavesOutAFewStraysThatWouldTakeUpTheScale) {
    std::vector<float> distances(30000, 4.0F);
    distances[7] = kNothing;
    distances[99] = 3.0F;
    distances[100] = 0.05F;
    distances[200] = 0.9F;
    const LensRange strays = lensRange(mapOf(distances), view(2.0));
    EXPECT_EQ(strays.span.nearest, static_cast<double>(0.9F));
    EXPECT_EQ(strays.span.farthest, kInfinity);
    EXPECT_EQ(strays.strays, 1U);
    const LensBlur blur(view(2.0), strays.span, {.layers = 16});
    EXPECT_EQ(countBeyond(mapOf(distances), strays.span, blur), 0U);

    // They stay where the blur at infinity is about as large, or if there are more.
    distances[100] = 3.0F;
    EXPECT_EQ(lensRange(mapOf(distances), view(2.0)).span.nearest, static_cast<double>(0.9F));
    std::fill_n(distances.begin() + 100, 4, 0.05F);
    const LensRange all = lensRange(mapOf(distances), view(2.0));
    EXPECT_EQ(all.span.nearest, static_cast<double>(0.05F));
    EXPECT_EQ(all.strays, 0U);
    const LensBlur limited(view(2.0), all.span, {.layers = 16});
    EXPECT_EQ(countBeyond(mapOf(distances), all.span, limited), 4U);
}

}  // namespace
}  // namespace pictures
