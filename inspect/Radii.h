// SPDX-License-Identifier: Apache-2.0
#pragma once
// The radius of the blur at every depth.

#include <vector>

#include "inspect/Spots.h"

namespace inspect {

// Measured at depths that lie closer together where the radius bends, and interpolated between
// them. Radii are as in Spot.
class Radii {
public:
    // Throws as measureSpots.
    explicit Radii(const Bench& bench, const Told& told = {});

    // Nearness is clamped to 0..1.
    double at(double nearness) const;
    double largest() const;
    // The middle of the depths with the smallest radius.
    double sharpest() const;

private:
    std::vector<double> bends(const std::vector<Spot>& spots) const;

    struct Sample {
        double nearness;
        double square;  // of the radius
    };
    std::vector<Sample> samples_;  // by ascending nearness
};

}  // namespace inspect
