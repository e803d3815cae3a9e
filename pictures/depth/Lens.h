// SPDX-License-Identifier: Apache-2.0
#pragma once
// The blur of a thin lens. All lengths are in millimetres.

namespace pictures {

// A lens that is focused on one distance. The formulas are those of the thin lens, as in
// R. Kingslake, "Optics in Photography", SPIE 1992, chapter 5.
struct Lens {
    double focalLength = 0;  // above 0
    double fStop = 0;        // above 0
    double focus = 0;        // distance, above 0; infinite for far
    // Whether it is focused by moving it, so that the image distance grows as the focus comes
    // nearer. Otherwise the image distance is the focal length, as in renderers. The focus must
    // then be farther than the focal length.
    bool breathing = false;

    // The diameter of the circle of confusion on the sensor for each 1/mm between 1/distance and
    // 1/focus: A f, or with breathing A f / (1 - f / focus), where A is focalLength / fStop.
    double gain() const;
    // The diameter of the circle of confusion of a point at `distance`, which may be infinite.
    double blurDiameter(double distance) const;
};

}  // namespace pictures
