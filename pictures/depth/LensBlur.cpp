// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/LensBlur.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace pictures {
namespace {

constexpr double kLeastInverse = 1e-9;  // relative to that of the focus; less is infinitely far

double controlFor(double radius, const EffectScale& scale) {
    const double full = LensLayers::fullRadiusFor(radius * scale.downsample) / scale.downsample;
    return std::clamp(full - kAddedRadius, 0.0, scale.largestRadius);
}

// The difference of 1/distance from 1/focus, in 1/mm, at which the blur has a radius.
double inverseDistance(const LensView& view, double radius) {
    return 2.0 * radius * view.pixelSize / view.lens.gain();
}

}  // namespace

double LensView::radius(double distance) const {
    return lens.blurDiameter(distance * mapUnit) / 2.0 / pixelSize;
}

LensBlur::LensBlur(const LensView& view, const DistanceSpan& span, const EffectScale& scale)
    : view_(view),
      downsample_(scale.downsample),
      nearRadius_(isNearer(span.nearest) ? view.radius(span.nearest) : 0.0),
      farRadius_(isNearer(span.farthest) ? 0.0 : view.radius(span.farthest)),
      reach_(std::min(std::max(nearRadius_, farRadius_), scale.largestRadius)),
      blurRadius_(controlFor(reach_, scale)),
      layers_(scale.layers, (blurRadius_ + kAddedRadius) * scale.downsample) {
    nearRadius_ = std::min(nearRadius_, reach_);
    farRadius_ = std::min(farRadius_, reach_);
    // The effect's scale reaches equally far to both sides of the focus until one side ends.
    const double nearShare = share(nearRadius_);
    const double farShare = share(farRadius_);
    focus_ = reach_ > 0.0 ? farShare / (nearShare + farShare) : 1.0;
}

double LensBlur::near() const {
    const double inverse = 1.0 / view_.lens.focus + inverseDistance(view_, nearRadius_);
    return 1.0 / inverse / view_.mapUnit;
}

double LensBlur::far() const {
    // Infinity may come out as a rounding error below 0.
    const double inverse = 1.0 / view_.lens.focus - inverseDistance(view_, farRadius_);
    const bool finite = inverse * view_.lens.focus > kLeastInverse;
    return finite ? 1.0 / inverse / view_.mapUnit : std::numeric_limits<double>::infinity();
}

double LensBlur::position(double distance) const {
    const double away = layers_.distanceFromFocus(view_.radius(distance) * downsample_) *
                        std::max(focus_, 1.0 - focus_);
    return std::clamp(isNearer(distance) ? focus_ + away : focus_ - away, 0.0, 1.0);
}

bool LensBlur::isNearer(double distance) const {
    return distance * view_.mapUnit < view_.lens.focus;
}

// How far from the focus the effect's scale has to reach for a radius; 1 for the full one.
double LensBlur::share(double radius) const {
    return radius < reach_ ? layers_.distanceFromFocus(radius * downsample_) : 1.0;
}

}  // namespace pictures
