// SPDX-License-Identifier: Apache-2.0
#include "pictures/apertures/Flaws.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "pictures/apertures/Outlines.h"

namespace apertures {
namespace {

// Numbers from 0 to below 1. The standard defines the generator's numbers, but not those of its
// distributions.
class Chance {
public:
    explicit Chance(std::uint32_t seed) : generator_(seed) {}
    double next() { return static_cast<double>(generator_()) / 4294967296.0; }

private:
    std::mt19937 generator_;
};

struct Place {
    Point centre;
    double radius;
};

constexpr int kSpeckCorners = 48;
constexpr double kUnevenness = 0.15;                // of a speck's radius, for each of its waves
constexpr double kReach = 1.0 + 3.0 * kUnevenness;  // of a speck, in radii

bool isFree(const Place& place, const std::vector<Place>& taken) {
    const auto touches = [&](const Place& other) {
        const double dx = other.centre.x - place.centre.x;
        const double dy = other.centre.y - place.centre.y;
        const double reach = kReach * (other.radius + place.radius);
        return dx * dx + dy * dy < reach * reach;
    };
    return std::none_of(taken.begin(), taken.end(), touches);
}

// A place inside the circle and apart from the others. Most specks are small; they shrink until
// there is room.
Place freePlace(const std::vector<Place>& taken, Chance& chance) {
    const double share = chance.next();
    Place place{{}, 0.008 + 0.05 * share * share * share};
    do {
        const double distance = std::sqrt(chance.next()) * (1.0 - kReach * place.radius);
        const Point direction = onCircle(chance.next());
        place.centre = {distance * direction.x, distance * direction.y};
        place.radius *= 0.98;
    } while (!isFree(place, taken));
    return place;
}

// A circle with two, three and four waves around it.
Outline grain(const Place& place, Chance& chance) {
    std::array<double, 3> sizes{};
    std::array<double, 3> turns{};
    for (double& size : sizes) size = kUnevenness * chance.next();
    for (double& turn : turns) turn = chance.next();
    Outline outline;
    for (int i = 0; i < kSpeckCorners; ++i) {
        const double around = static_cast<double>(i) / kSpeckCorners;
        double radius = 1.0;
        for (std::size_t k = 0; k < sizes.size(); ++k) {
            radius += sizes[k] * onCircle(static_cast<double>(k + 2) * around + turns[k]).x;
        }
        radius *= place.radius;
        const Point p = onCircle(around);
        outline.push_back({place.centre.x + radius * p.x, place.centre.y + radius * p.y});
    }
    return outline;
}

}  // namespace

Rings::Rings(int count, std::uint32_t seed) {
    Chance chance(seed);
    double end = 0.0;
    for (int i = 0; i < count; ++i) {
        const double begin = end;
        end += 0.5 + chance.next();
        rings_.push_back({begin, end, 0.3 + 0.7 * chance.next()});
    }
    for (Ring& ring : rings_) {
        ring.begin /= end;
        ring.end /= end;
    }
}

// A parabola in each ring, 0 at its borders.
double Rings::darkness(double radius) const {
    for (const Ring& ring : rings_) {
        if (radius >= ring.end) continue;
        const double inside = (radius - ring.begin) / (ring.end - ring.begin);
        return 4.0 * inside * (1.0 - inside) * ring.depth;
    }
    return 0.0;
}

std::vector<Speck> scatterSpecks(int count, std::uint32_t seed) {
    Chance chance(seed);
    std::vector<Place> taken;
    std::vector<Speck> specks;
    for (int i = 0; i < count; ++i) {
        taken.push_back(freePlace(taken, chance));
        specks.push_back({grain(taken.back(), chance), 0.4 + 0.6 * chance.next()});
    }
    return specks;
}

}  // namespace apertures
