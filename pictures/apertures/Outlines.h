// SPDX-License-Identifier: Apache-2.0
#pragma once
// The outlines of apertures. Angles are in turns, clockwise from the top.

#include "pictures/apertures/Coverage.h"

namespace apertures {

// The point at this angle on the circle of radius 1, from power series: the functions of the
// standard library differ between platforms in the last bits.
Point onCircle(double turns);

// `corners` points on an ellipse with these half axes.
Outline ellipse(double halfWidth, double halfHeight, int corners);
Outline circle(double radius, int corners);

// A polygon with `count` corners on the circle of radius 1. Its sides are arcs whose curvature is
// that of the circle (1) to straight (0), drawn with about `corners` points in all.
Outline bladed(int count, double curvature, int corners);

// A star with `count` points on the circle of radius 1, and notches at `inner`.
Outline star(int count, double inner);

// A heart around its centre of gravity, in the circle of radius 1.
Outline heart(int corners);

Outline rotated(const Outline& outline, double turns);

}  // namespace apertures
