// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's controls for the blur of a lens.

#include "pictures/depth/Lens.h"
#include "pictures/depth/LensLayers.h"

namespace pictures {

// A lens in front of an image and its map. Radii are in pixels of the full resolution; where
// pixels aren't square, in heights of one.
struct LensView {
    Lens lens;
    double pixelSize = 1;  // height of a pixel on the sensor, mm
    double mapUnit = 1;    // of the map's distances, mm

    // The radius of the blur of a point at `distance` in the map's unit.
    double radius(double distance) const;
};

// The distances in a map that are to have their blur, in its unit; the farthest may be infinite.
struct DistanceSpan {
    double nearest = 0;
    double farthest = 0;
};

// What the effect can do.
struct EffectScale {
    int layers = 2;              // of the control Resolution
    double downsample = 1;       // of the render, at most 1
    double largestRadius = 500;  // of the control Blur Radius
};

// The controls, with Profile 0, and the effect's scale of depth from 0, far, to 1, near. It is
// about linear in 1/distance; what it deviates makes up for the layers.
class LensBlur {
public:
    LensBlur(const LensView& view, const DistanceSpan& span, const EffectScale& scale);

    // The ends of the range that holds the focus and as much of the span as the controls reach, in
    // the map's unit. Distances beyond get the blur of the ends.
    double near() const;
    double far() const;
    double blurRadius() const { return blurRadius_; }  // the control, 0 to the largest
    // The place of the focus on the scale.
    double focus() const { return focus_; }
    // The place of a distance on the scale.
    double position(double distance) const;

    // The largest lens blur that the controls reach, as radius in pixels.
    double reach() const { return reach_; }
    // By how much the radii of neighbouring layers differ, in pixels.
    double layerStep() const { return layers_.step() / downsample_; }

private:
    bool isNearer(double distance) const;
    double share(double radius) const;

    LensView view_;
    double downsample_;
    double nearRadius_;  // at the ends of the range
    double farRadius_;
    double reach_;
    double blurRadius_;
    LensLayers layers_;
    double focus_ = 1.0;
};

}  // namespace pictures
