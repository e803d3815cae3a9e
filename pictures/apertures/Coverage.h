// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <vector>

namespace apertures {

// A position in the aperture: 0 is its centre, 1 its radius; x grows to the right, y downwards.
struct Point {
    double x = 0.0;
    double y = 0.0;
};

// A closed polygon, clockwise as it is seen.
using Outline = std::vector<Point>;

// A square image to which outlines are added, each pixel by the area that is covered of it.
class Coverage {
public:
    // When `cancel` becomes true, nothing more is added.
    Coverage(int size, const std::atomic<bool>& cancel);

    int size() const { return size_; }
    // The number of corners that make a polygon a circle of this radius: the sides are off by at
    // most 1/4096 pixel. A multiple of 4.
    int cornersOfCircle(double radius) const;
    // Adds `weight` times the covered share of each pixel. What lies outside the image is moved
    // to its sides.
    void add(const Outline& outline, double weight);
    // The sums, clamped to 0..1, in multiples of 2^-24.
    std::vector<float> values() const;

private:
    void addEdge(Point from, Point to, double weight);
    void addPiece(int row, double left, double right, double weight);
    double toPixels(double position) const;

    int size_;
    const std::atomic<bool>& cancel_;
    // The differences of neighbours in each row; an edge at the right side needs two more.
    std::vector<double> steps_;
};

}  // namespace apertures
