// SPDX-License-Identifier: Apache-2.0
#include "scene/Lanterns.h"

#include <cmath>
#include <iterator>

namespace scene {
namespace {

constexpr double kBulbSpacing = 0.95;
constexpr double kSmallestLamp = 0.8;  // radius in pixels

const Vec3 kBulbs[] = {{1.0, 0.16, 0.08}, {1.0, 0.55, 0.1}, {0.2, 1.0, 0.3},
                       {0.15, 0.45, 1.0}, {0.9, 0.2, 0.9},  {1.0, 0.85, 0.6}};

}  // namespace

Vec3 bulbColour(int number) {
    constexpr int kCount = static_cast<int>(std::size(kBulbs));
    return kBulbs[((number % kCount) + kCount) % kCount];
}

Lanterns::Lanterns(double pixelAngle) : pixelAngle_(pixelAngle) {
    addStreetLamps();
    addGarlands();
    addTraffic();
    std::stable_sort(lamps_.begin(), lamps_.end(),
                     [](const Lamp& a, const Lamp& b) { return a.place.z < b.place.z; });
}

void Lanterns::addLamp(const Vec3& place, double radius, const Vec3& light) {
    lamps_.push_back({place, std::max(radius, kSmallestLamp * pixelAngle_ * place.z), light});
}

void Lanterns::addStreetLamps() {
    for (int i = 0; i < 9; ++i) {
        const double z = 9.0 + 7.5 * i;
        const double side = (i & 1) != 0 ? -1.0 : 1.0;
        const Vec3 place{side * 5.6, 4.6, z};
        const Vec3 tone = i % 3 == 2 ? Vec3{0.75, 0.9, 1.0} : Vec3{1.0, 0.6, 0.22};
        addLamp(place, 0.13, tone * 160.0);
        lighting_.push_back({place, 0.0, tone * 13.0});
        posts_.push_back({place.x, z + 0.01, 4.6, 0.06});
    }
}

void Lanterns::addGarlands() {
    for (int i = 0; i < 6; ++i) {
        const double z = 6.5 + 5.5 * i;
        const double bulb = std::max(0.05, kSmallestLamp * pixelAngle_ * z);
        const double height = 5.4 + 0.25 * (i % 3);
        garlands_.push_back({z, height, 0.9 + 0.15 * (i % 2), bulb, 19 * i});
        lighting_.push_back({{0.0, height, z}, 0.0, {1.2, 0.9, 0.8}});
    }
}

void Lanterns::addTraffic() {
    for (int i = 0; i < 6; ++i) {
        const double z = 16.0 + 9.0 * i;
        const bool towardsUs = (i & 1) != 0;
        const double lane = (towardsUs ? -2.3 : 2.3) + 0.4 * hash(i, 0, 90);
        const Vec3 light = towardsUs ? Vec3{230.0, 215.0, 180.0} : Vec3{60.0, 2.4, 1.6};
        for (const double half : {-0.7, 0.7}) {
            addLamp({lane + half, 0.72, z}, towardsUs ? 0.09 : 0.10, light);
        }
        lighting_.push_back({{lane, 0.8, z - 1.0}, 0.0, light * 0.012});
    }
    addLamp({4.7, 3.1, 34.0}, 0.12, {2.0, 90.0, 40.0});       // a traffic light
    addLamp({-2.6, 2.35, 2.9}, 0.045, {240.0, 130.0, 45.0});  // a lantern near the camera
}

Vec3 Lanterns::lightAt(const Vec3& place, const Vec3& normal) const {
    Vec3 sum{0.012, 0.014, 0.024};
    for (const Lamp& lamp : lighting_) {
        const Vec3 way = lamp.place - place;
        const double square = dot(way, way) + 0.25;
        const double facing = dot(way, normal) / std::sqrt(square);
        if (facing > 0.0) sum = sum + lamp.light * (facing / square);
    }
    return sum;
}

void Lanterns::lookAtLamps(const Vec3& from, const Vec3& direction, Sight& sight) const {
    for (const Lamp& lamp : lamps_) {
        const double way = lamp.place.z - from.z;
        if (way <= 0.0) continue;
        if (lamp.place.z >= sight.distance) return;
        const Vec3 at = from + direction * way;
        const double off = std::hypot(at.x - lamp.place.x, at.y - lamp.place.y);
        if (off >= lamp.radius) continue;
        sight = {lamp.light, lamp.place.z};
        return;
    }
}

void Lanterns::lookAtPosts(const Vec3& from, const Vec3& direction, Sight& sight) const {
    for (const Post& post : posts_) {
        const double way = post.z - from.z;
        if (way <= 0.0 || post.z >= sight.distance) continue;
        const Vec3 at = from + direction * way;
        const double off = (at.x - post.x) / post.radius;
        if (std::fabs(off) >= 1.0 || at.y < 0.0 || at.y > post.top) continue;
        const Vec3 normal{off, 0.0, -std::sqrt(1.0 - off * off)};
        sight = {Vec3{0.1, 0.11, 0.12} * lightAt(at, normal), post.z};
    }
}

double Lanterns::Garland::wireAt(double x) const {
    const double share = x / kWall;
    return height - sag * (1.0 - share * share);
}

void Lanterns::lookAtGarlands(const Vec3& from, const Vec3& direction, Sight& sight) const {
    for (const Garland& garland : garlands_) {
        const double way = garland.z - from.z;
        if (way <= 0.0 || garland.z >= sight.distance) continue;
        const Vec3 at = from + direction * way;
        if (std::fabs(at.x) >= kWall) continue;
        const double nearest = std::round(at.x / kBulbSpacing);
        const double bulbX = nearest * kBulbSpacing;
        const double bulbY = garland.wireAt(bulbX) - 0.08;
        if (std::hypot(at.x - bulbX, at.y - bulbY) < garland.bulb) {
            const int number = garland.firstColour + static_cast<int>(nearest);
            sight = {bulbColour(number) * 45.0, garland.z};
        } else if (std::fabs(at.y - garland.wireAt(at.x)) < 0.012) {
            sight = {{0.004, 0.004, 0.005}, garland.z};
        }
    }
}

void Lanterns::look(const Vec3& from, const Vec3& direction, Sight& sight) const {
    lookAtGarlands(from, direction, sight);
    lookAtPosts(from, direction, sight);
    lookAtLamps(from, direction, sight);
}

}  // namespace scene
