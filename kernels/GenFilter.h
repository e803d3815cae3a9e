// SPDX-License-Identifier: Apache-2.0
#pragma once
// Draws the procedural aperture.

#include <array>
#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/EffectWorld.h"

// A regular polygon that can be rounded towards a circle or bent inward to a star, squeezed along
// one axis, rotated, and weighted from the centre to the rim. It fills the image whatever the blur
// radius: the centre is pixel (width / 2, height / 2), and the circle through the vertices has a
// radius of half the width. Item i of the iteration is pixel i of the image, row by row.
class GenFilter {
public:
    // `shape` is a square float image; every pixel of it is written. Keeps `info` and `shape` by
    // reference.
    GenFilter(AEO::InData& context, PF_InData* in_data, const RenderInfo& info,
              AEO::EffectWorld& shape);

    // The aperture's radial measure of a point, in the unit of x and y, which are relative to the
    // centre: it equals the rim radius on the outline and is never below the point's distance.
    double estimateShapeRadius(double x, double y) const;

    // The weight, 0 to 1, of a point with radial measure `r` when the rim is at `rimRadius`.
    double estimateWeightFunc(double r, double rimRadius) const;

    // Computes pixel `index`: the weight in alpha, zero in the colours. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    void setShape();
    void setWeight();
    void setMatrix();
    double pixelWeight(double dx, double dy, double radius) const;
    double rimWeight(double dx, double dy, double radius) const;

    struct Normal {
        double x;
        double y;
    };

    std::int32_t vertices;
    double sectorAngle;  // between two vertices, radians
    double cosHalfSector;
    double rotationRad;
    double roundMix;     // 1 is the circle's measure, 0 the polygon's, below 0 a star's
    double weightEdge0;  // share of the rim where the weight is 0
    double weightEdge1;  // share of the rim where the weight reaches 1
    double weightPower;
    double deformX;                   // scale along the turned x axis, at most 1
    double deformY;                   // along the turned y axis, at most 1
    double shapeMatrix[4];            // from a pixel offset to shape space: a, b, c, d
    std::array<Normal, 10> normals_;  // of the polygon's sides; the control has at most 10
    std::size_t sides_ = 0;
    AEO::EffectWorld& shape_;
    const RenderInfo& info_;
};
