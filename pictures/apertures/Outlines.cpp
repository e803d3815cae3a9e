// SPDX-License-Identifier: Apache-2.0
#include "pictures/apertures/Outlines.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace apertures {
namespace {

constexpr double kTwoPi = 6.283185307179586;

// Taylor series for angles up to an eighth of a turn, to the last bits of a double.
double sineOfSmall(double angle) {
    const double square = angle * angle;
    double sum = 0.0;
    for (int n = 16; n > 0; n -= 2) sum = (1.0 - sum) * square / (n * (n + 1.0));
    return angle * (1.0 - sum);
}

double cosineOfSmall(double angle) {
    const double square = angle * angle;
    double sum = 0.0;
    for (int n = 17; n > 0; n -= 2) sum = (1.0 - sum) * square / (n * (n + 1.0));
    return 1.0 - sum;
}

// Centre of gravity of the area inside, by the shoelace formula.
Point centreOf(const Outline& outline) {
    double area = 0.0;
    Point sum;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point& a = outline[i];
        const Point& b = outline[i + 1 < outline.size() ? i + 1 : 0];
        const double cross = a.x * b.y - b.x * a.y;
        area += cross;
        sum.x += (a.x + b.x) * cross;
        sum.y += (a.y + b.y) * cross;
    }
    return {sum.x / (3.0 * area), sum.y / (3.0 * area)};
}

// Moves the centre of gravity to 0 and scales the farthest point to the circle of radius 1.
void fit(Outline& outline) {
    const Point centre = centreOf(outline);
    double largest = 0.0;
    for (Point& p : outline) {
        p = {p.x - centre.x, p.y - centre.y};
        largest = std::max(largest, p.x * p.x + p.y * p.y);
    }
    const double radius = std::sqrt(largest);
    for (Point& p : outline) p = {p.x / radius, p.y / radius};
}

}  // namespace

Point onCircle(double turns) {
    const double quarters = std::floor(4.0 * turns + 0.5);
    const double angle = (turns - 0.25 * quarters) * kTwoPi;
    const double sine = sineOfSmall(angle);
    const double cosine = cosineOfSmall(angle);
    switch (static_cast<int>(quarters - 4.0 * std::floor(0.25 * quarters))) {
        case 0:
            return {sine, -cosine};
        case 1:
            return {cosine, sine};
        case 2:
            return {-sine, cosine};
        default:
            return {-cosine, -sine};
    }
}

Outline ellipse(double halfWidth, double halfHeight, int corners) {
    Outline outline;
    outline.reserve(static_cast<std::size_t>(corners));
    for (int i = 0; i < corners; ++i) {
        const Point p = onCircle(static_cast<double>(i) / corners);
        outline.push_back({p.x * halfWidth, p.y * halfHeight});
    }
    return outline;
}

Outline circle(double radius, int corners) {
    return ellipse(radius, radius, corners);
}

// A side is drawn lying at the top, and then turned into its place. The arc of curvature c over it
// has the radius 1/c, and rises by the difference of two heights above the arc's centre.
Outline bladed(int count, double curvature, int corners) {
    const int pieces = curvature > 0.0 ? corners / count + 1 : 1;
    const Point corner = onCircle(0.5 / count);
    const double squared = curvature * curvature;
    const double endHeight = std::sqrt(1.0 - squared * corner.x * corner.x);
    Outline side;
    for (int i = 0; i < pieces; ++i) {
        const double x = corner.x * (2.0 * i / pieces - 1.0);
        const double height = std::sqrt(1.0 - squared * x * x);
        const double rise = curvature > 0.0 ? (height - endHeight) / curvature : 0.0;
        side.push_back({x, corner.y - rise});
    }
    Outline outline;
    for (int blade = 0; blade < count; ++blade) {
        const Outline turned = rotated(side, (blade + 0.5) / count);
        outline.insert(outline.end(), turned.begin(), turned.end());
    }
    return outline;
}

Outline star(int count, double inner) {
    Outline outline;
    for (int i = 0; i < 2 * count; ++i) {
        const Point p = onCircle(0.5 * i / count);
        const double radius = i % 2 == 0 ? 1.0 : inner;
        outline.push_back({p.x * radius, p.y * radius});
    }
    return outline;
}

// Curve: E. W. Weisstein, "Heart Curve", MathWorld, the sixth one.
Outline heart(int corners) {
    Outline outline;
    for (int i = 0; i < corners; ++i) {
        const double turns = static_cast<double>(i) / corners;
        const double sine = onCircle(turns).x;
        const auto cosine = [&](int multiple) { return -onCircle(multiple * turns).y; };
        outline.push_back({16.0 * sine * sine * sine,
                           5.0 * cosine(2) + 2.0 * cosine(3) + cosine(4) - 13.0 * cosine(1)});
    }
    fit(outline);
    return outline;
}

Outline rotated(const Outline& outline, double turns) {
    const Point up = onCircle(turns);
    Outline turned;
    turned.reserve(outline.size());
    for (const Point& p : outline) {
        turned.push_back({-p.x * up.y - p.y * up.x, p.x * up.x - p.y * up.y});
    }
    return turned;
}

}  // namespace apertures
