// SPDX-License-Identifier: Apache-2.0
#include "kernels/GenFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/Iterator.h"
#include "support/StageFixture.h"

namespace {

constexpr int kSide = 96;
constexpr double kHalf = kSide / 2.0;
// The largest value that the controls accept.
constexpr double kMost = 64880.0 / 65536.0;

// The radial measure of a point by geometry: for a polygon the largest projection on the normals of
// its sides, scaled to the distance at the vertices.
double expectedRadius(const RenderInfo& info, double x, double y) {
    const double turn = info.rotation * std::numbers::pi / 180.0;
    const double squeeze = 1.0 - std::abs(info.deform);
    const double along =
        (x * std::cos(turn) + y * std::sin(turn)) / (info.deform > 0 ? squeeze : 1);
    const double across =
        (y * std::cos(turn) - x * std::sin(turn)) / (info.deform < 0 ? squeeze : 1);
    const double circle = std::hypot(along, across);

    const double apothem = std::cos(std::numbers::pi / info.vertices);
    double polygon = 0.0;
    for (int side = 0; side < info.vertices; ++side) {
        const double normal = (2 * side + 1) * std::numbers::pi / info.vertices;
        polygon = std::max(polygon, along * std::cos(normal) + across * std::sin(normal));
    }
    polygon /= apothem;

    double round = 1.0 - std::tan((1.0 - info.roundness) * std::numbers::pi / 4.0);
    if (round < 0.0) round /= 1.0 - apothem;
    return round * circle + (1.0 - round) * polygon;
}

// The weight at the radial share t of the rim: an S-curve whose width grows with the concentration.
double expectedWeight(const RenderInfo& info, double t) {
    if (t >= 1.0) return 0.0;
    const double c = std::abs(info.concentration);
    const double width = std::min(2.0 * c, 1.0);
    const double way = info.concentration < 0.0 ? t : 1.0 - t;
    const double u = way < width ? way / width : 1.0;
    const double curve = u * u * (3.0 - 2.0 * u);
    return std::pow(curve, c > 0.5 ? std::tan(c * std::numbers::pi / 2.0) : 1.0);
}

// A pixel of the image; within two pixels of the rim the mean over a 3x3 grid in the pixel.
double expectedPixel(const RenderInfo& info, int col, int row) {
    // The image shows the shape rotated by half a turn.
    const double x = kHalf - col;
    const double y = kHalf - row;
    const double r = expectedRadius(info, x, y);
    if (std::abs(r - kHalf) > 2.0) return expectedWeight(info, r / kHalf);
    double sum = 0.0;
    for (double dy : {-1.0 / 3.0, 0.0, 1.0 / 3.0}) {
        for (double dx : {-1.0 / 3.0, 0.0, 1.0 / 3.0}) {
            sum += expectedWeight(info, expectedRadius(info, x + dx, y + dy) / kHalf);
        }
    }
    return sum / 9.0;
}

class GenFilterTest : public testing::Test {
protected:
    // Draws over NaN pixels, with padding after the rows.
    void draw(int vertices, double roundness, double concentration, double deform,
              double rotation) {
        frame.info.vertices = vertices;
        frame.info.roundness = roundness;
        frame.info.concentration = concentration;
        frame.info.deform = deform;
        frame.info.rotation = rotation;
        image.fillWithPattern();
        GenFilter filter(frame.context, &frame.in_data, frame.info, target);
        ASSERT_EQ(AEO::Iterator::IterationT(frame.context, filter, kSide * kSide), 0);
        ASSERT_EQ(image.damage(), "");
    }

    headless::Host host;
    StageFixture frame{host};
    headless::World image{kSide, kSide, PF_PixelFormat_ARGB128, {.rowPadding = 16}};
    AEO::EffectWorld target{frame.context, image.record()};
};

TEST_F(GenFilterTest, DrawsTheShapeThatGeometryGives) {
    struct Shape {
        int vertices;
        double roundness, concentration, deform, rotation;
    };
    for (const Shape& s : {Shape{3, 0.0, 0.0, 0.0, 11.0}, Shape{5, -0.5, 0.0, 0.0, 71.0},
                           Shape{6, 0.5, 0.2, 0.0, -200.0}, Shape{10, 1.0, 0.5, 0.5, 17.0},
                           Shape{4, 0.3, 0.8, -0.5, 29.0}, Shape{7, -kMost, -0.3, 0.0, 400.0},
                           Shape{8, kMost, -0.9, kMost, 45.5}, Shape{3, 1.0, 0.0, 0.0, 0.0},
                           Shape{3, -kMost, -kMost, -kMost, 33.0}}) {
        draw(s.vertices, s.roundness, s.concentration, s.deform, s.rotation);
        for (int y = 0; y < kSide; ++y) {
            for (int x = 0; x < kSide; ++x) {
                const PF_PixelFloat p = image.get(x, y);
                ASSERT_NEAR(p.alpha, expectedPixel(frame.info, x, y), 2e-6)
                    << s.vertices << " vertices at " << x << ", " << y;
                ASSERT_TRUE(p.red == 0.0f && p.green == 0.0f && p.blue == 0.0f);
            }
        }
    }
}

TEST_F(GenFilterTest, WeightsKeepTheirEdgesApartAtTheEnds) {
    draw(6, 1.0, -0.25, 0.0, 0.0);
    // The gap between the weight's edges shows in the very centre.
    EXPECT_NEAR(image.get(kSide / 2, kSide / 2).alpha, 1.2e-19, 1e-23);
    frame.info.concentration = 0.99;
    const GenFilter peak(frame.context, &frame.in_data, frame.info, target);
    EXPECT_EQ(peak.estimateWeightFunc(0.0, 7.0), 1.0);
    EXPECT_EQ(peak.estimateWeightFunc(7.0, 7.0), 0.0);
}

}  // namespace
