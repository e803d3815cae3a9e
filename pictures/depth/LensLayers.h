// SPDX-License-Identifier: Apache-2.0
#pragma once
// How the effect's depth layers blur, and where among them a lens's blur is found.

#include <vector>

namespace pictures {

// The effect adds it to the control Blur Radius, in pixels of the full resolution.
inline constexpr double kAddedRadius = 0.5;

// The second moment of the light that a point spreads into a disc of `radius` pixels, in square
// pixels: the mean of dx^2 + dy^2 over the pixels by which the disc is drawn, each of which holds
// the part of the disc that it covers. radius^2 / 2 + 1/6 for large discs; 0 up to half a pixel.
double discMoment(double radius);

// The depth layers of a frame with Profile 0: layer i of N has the share (N - 1 - i) / (N - 1) of
// the full radius, and its weight is 1 at position i + 0.5 of 0 to N, falling linearly to 0 at its
// neighbours' positions. A pixel between two layers thus gets a mix of two discs, whose second
// moments add up by their weights.
class LensLayers {
public:
    // `count` is that of the control Resolution, at least 2; `fullRadius` is in pixels of the
    // render.
    LensLayers(int count, double fullRadius);

    // The effect's distance from focus, 0 to 1, at which the blur has the radius of gyration of a
    // lens's disc with `radius` pixels, which is radius / sqrt(2). Radii beyond the full one get
    // the full blur.
    double distanceFromFocus(double radius) const;

    // The reverse: the radius of a lens's disc with the radius of gyration of the blur there.
    double radiusAt(double distanceFromFocus) const;

    // The radius of a lens's disc with the radius of gyration of the full blur.
    double largestRadius() const;
    // By how much the radii of neighbouring layers differ.
    double step() const { return step_; }

    // The full radius at which the largest blur is that of a lens's disc with `radius` pixels; at
    // least 0.5, the least that the effect has.
    static double fullRadiusFor(double radius);

private:
    double step_;
    std::vector<double> moments_;  // falling; the last one is 0
};

}  // namespace pictures
