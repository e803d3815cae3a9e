// SPDX-License-Identifier: Apache-2.0
#include "inspect/Radii.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace inspect {
namespace {

constexpr int kFirstSteps = 32;
constexpr int kRounds = 5;
// Of all frames of spots together: where a spot is large, fewer depths have to do.
constexpr double kMostPixels = 8e6;
// Where the radius in the middle of two depths is as interpolated, within this, no more are
// measured: pixels, and share of the radius.
constexpr double kTolerance = 0.02;
constexpr double kShare = 0.004;
// Radii that differ by less pixels are one.
constexpr double kSame = 0.01;

// The depths a step before and behind each, in order.
std::vector<float> beside(const std::vector<double>& depths, double step) {
    std::vector<float> found;
    for (const double depth : depths) {
        for (const double next : {depth - step, depth + step}) {
            if (next > 0.0 && next < 1.0) found.push_back(static_cast<float>(next));
        }
    }
    std::ranges::sort(found);
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

// Of the part of a frame that is needed to measure a spot.
double pixelsOf(const Spot& spot) {
    return 4.0 * spot.size * spot.size;
}

}  // namespace

// Each round halves the step, around the depths where interpolation would have failed.
Radii::Radii(const Bench& bench, const Told& told) {
    std::vector<float> wanted;
    for (int i = 0; i <= kFirstSteps; ++i) wanted.push_back(static_cast<float>(i) / kFirstSteps);
    double step = 1.0 / kFirstSteps;
    double pixels = 0.0;
    for (int round = 0; round <= kRounds && !wanted.empty(); ++round) {
        const std::vector<Spot> spots = measureSpots(bench, wanted, [&](double share) {
            if (told) told((round + share) / (kRounds + 1));
        });
        const std::vector<double> bent = bends(spots);
        for (const Spot& spot : spots) {
            samples_.push_back({spot.nearness, spot.radius * spot.radius});
        }
        std::ranges::sort(samples_, {}, &Sample::nearness);
        step /= 2.0;
        wanted = beside(bent, step);
        const double each = pixelsOf(spots.front());
        pixels += each * static_cast<double>(spots.size());
        if (pixels + each * static_cast<double>(wanted.size()) > kMostPixels) return;
    }
}

// The depths at which the radius isn't as interpolated; all of them, as long as there are no
// others.
std::vector<double> Radii::bends(const std::vector<Spot>& spots) const {
    std::vector<double> bent;
    for (const Spot& spot : spots) {
        const bool known = !samples_.empty() && std::fabs(at(spot.nearness) - spot.radius) <=
                                                    std::max(kTolerance, kShare * spot.radius);
        if (!known) bent.push_back(spot.nearness);
    }
    return bent;
}

// Second moments of light add up, so that squares of radii are straight between two layers of
// depth whose discs mix.
double Radii::at(double nearness) const {
    const double depth = std::clamp(nearness, 0.0, 1.0);
    const auto next = std::ranges::lower_bound(samples_, depth, {}, &Sample::nearness);
    if (next == samples_.begin()) return std::sqrt(next->square);
    const Sample& a = *std::prev(next);
    const Sample& b = *next;
    const double share = (depth - a.nearness) / (b.nearness - a.nearness);
    return std::sqrt(std::lerp(a.square, b.square, share));
}

double Radii::largest() const {
    return std::sqrt(std::ranges::max_element(samples_, {}, &Sample::square)->square);
}

double Radii::sharpest() const {
    const double least = std::sqrt(std::ranges::min_element(samples_, {}, &Sample::square)->square);
    const auto sharp = [&](const Sample& sample) {
        return std::sqrt(sample.square) <= least + kSame;
    };
    const auto first = std::ranges::find_if(samples_, sharp);
    const auto last = std::find_if(samples_.rbegin(), samples_.rend(), sharp);
    return (first->nearness + last->nearness) / 2.0;
}

}  // namespace inspect
