// SPDX-License-Identifier: Apache-2.0
#include "kernels/GenFilter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "transform/LaneMath.h"
#include "transform/SetUpMath.h"

namespace {

using std::numbers::pi;
constexpr double kHalfPi = pi / 2.0;
constexpr double kTwoPi = pi * 2.0;
constexpr double kRadiansPerDegree = pi / 180.0;

// Keeps the two edges of the weight apart, so that their difference is a valid divisor.
constexpr double kEdgeGap = 1e-10;

// Half the width of the antialiased band around the rim, in pixels of the image.
constexpr double kRimBand = 2.0;
// Samples of one pixel of the band along each axis.
constexpr int kRimSamples = 3;

PF_PixelFloat& pixelAt(const PF_LayerDef& image, int row, int col) {
    auto* const bytes = static_cast<std::byte*>(image.data);
    return reinterpret_cast<PF_PixelFloat*>(bytes + std::ptrdiff_t{image.rowbytes} * row)[col];
}

}  // namespace

GenFilter::GenFilter(AEO::InData&, PF_InData*, const RenderInfo& info, AEO::EffectWorld& shape)
    : shape_(shape), info_(info) {
    setShape();
    setWeight();
    setMatrix();
}

void GenFilter::setShape() {
    deformX = info_.deform > 0.0 ? 1.0 - info_.deform : 1.0;
    deformY = info_.deform < 0.0 ? 1.0 + info_.deform : 1.0;
    vertices = info_.vertices;
    sectorAngle = kTwoPi / vertices;
    cosHalfSector = set_up::cos(sectorAngle * 0.5);
    rotationRad = info_.rotation * kRadiansPerDegree;
    roundMix = 1.0 - set_up::tan((1.0 - info_.roundness) * pi * 0.25);
    // The sides of a star bend inward equally far whatever the number of vertices.
    if (roundMix < 0.0) roundMix /= 1.0 - cosHalfSector;
    sides_ = std::min<std::size_t>(normals_.size(), static_cast<std::size_t>(vertices));
    for (std::size_t side = 0; side < sides_; ++side) {
        const set_up::SineCosine normal =
            set_up::sineAndCosine((static_cast<double>(side) + 0.5) * sectorAngle);
        normals_[side] = {normal.cosine.high, normal.sine.high};
    }
}

// Up to a concentration of one half the edges move; above, the power grows.
void GenFilter::setWeight() {
    const double c = info_.concentration;
    if (c >= 0.0) {
        weightEdge0 = 1.0;
        weightEdge1 = std::max(1.0 - 2.0 * c - kEdgeGap, 0.0);
    } else {
        weightEdge0 = -kEdgeGap;
        weightEdge1 = std::min(-2.0 * c, 1.0);
    }
    weightPower = std::max(set_up::tan(std::abs(c) * kHalfPi), 1.0);
}

// Rotates by -rotation, then divides each axis by its deformation.
void GenFilter::setMatrix() {
    const double s = set_up::sin(rotationRad);
    const double k = set_up::cos(rotationRad);
    shapeMatrix[0] = k / deformX;
    shapeMatrix[1] = -s / deformY;
    shapeMatrix[2] = s / deformX;
    shapeMatrix[3] = k / deformY;
}

double GenFilter::estimateShapeRadius(double x, double y) const {
    const double px = static_cast<double>(static_cast<float>(x));
    const double py = static_cast<double>(static_cast<float>(y));
    const auto& [a, b, c, d] = shapeMatrix;
    const double u = a * px + c * py;
    const double v = b * px + d * py;
    const double distance = std::sqrt(u * u + v * v);

    // The polygon's measure is constant along a side and equals the distance at its vertices: the
    // projection on the normal of the nearest side, which is the largest of the projections.
    double projection = 0.0;
    for (std::size_t side = 0; side < sides_; ++side) {
        const Normal& normal = normals_[side];
        projection = std::max(projection, u * normal.x + v * normal.y);
    }
    const double polygon = projection / cosHalfSector;
    return roundMix * distance + (1.0 - roundMix) * polygon;
}

double GenFilter::estimateWeightFunc(double r, double rimRadius) const {
    double base = 0.0;
    if (r < rimRadius) {
        const double edge0 = rimRadius * weightEdge0;
        const double edge1 = rimRadius * weightEdge1;
        const double u = std::min(std::max((r - edge0) / (edge1 - edge0), 0.0), 1.0);
        base = u * u * (3.0 - 2.0 * u);
    }
    return weightPower == 1.0 ? base : ET::lane::powerOfRest(1.0 - base, weightPower);
}

int GenFilter::iterate(int, int index, int) {
    const PF_LayerDef& image = shape_.world;
    const int row = index / image.width;
    const int col = index % image.width;
    const double radius = image.width * 0.5;
    const double dx = col - radius;
    const double dy = row - image.height * 0.5;
    const double weight = pixelWeight(dx, dy, radius);
    pixelAt(image, row, col) = {static_cast<float>(weight), 0.0F, 0.0F, 0.0F};
    return 0;
}

// Skips the costly measure outside the circle, since no outline extends beyond it. The point is
// mirrored: the first vertex points to the left, and turns clockwise as the rotation grows.
double GenFilter::pixelWeight(double dx, double dy, double radius) const {
    if (!(dx * dx + dy * dy < (radius + 1.0) * (radius + 1.0))) return 0.0;
    const double r = estimateShapeRadius(-dx, -dy);
    if (r < radius - kRimBand) return estimateWeightFunc(r / radius, 1.0);
    if (r < radius + kRimBand) return rimWeight(dx, dy, radius);
    return 0.0;
}

// The mean over a grid of samples inside the pixel.
double GenFilter::rimWeight(double dx, double dy, double radius) const {
    double sum = 0.0;
    for (int j = 0; j < kRimSamples; ++j) {
        for (int i = 0; i < kRimSamples; ++i) {
            const double x = -0.5 - dx + (2 * i + 1) / (2.0 * kRimSamples);
            const double y = -0.5 - dy + (2 * j + 1) / (2.0 * kRimSamples);
            sum += estimateWeightFunc(estimateShapeRadius(x, y) / radius, 1.0);
        }
    }
    return sum / (kRimSamples * kRimSamples);
}
