// SPDX-License-Identifier: Apache-2.0
#include "scene/Street.h"

#include <limits>

namespace scene {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kWallEnd = 75.0;   // where the rows of houses end
constexpr double kSkyline = 160.0;  // distance of the town beyond them
constexpr double kBoardDistance = 3.2;
constexpr double kRailingDistance = 1.7;
constexpr double kHorizonEnd = 250.0;  // where the street ends in haze

Vec3 sky(const Vec3& direction) {
    const double up = std::max(direction.y, 0.0);
    Vec3 colour = mix({0.085, 0.045, 0.05}, {0.004, 0.008, 0.03}, smoothStep(0.0, 0.55, up));
    const double clouds = cloud(direction.x * 3.0, up * 9.0, 11);
    colour = colour + Vec3{0.05, 0.035, 0.05} * smoothStep(0.5, 0.85, clouds);
    const int column = cell(direction.x * 620.0);
    const int row = cell(direction.y * 620.0);
    const double star = hash(column, row, 3);
    if (star > 0.9988) colour = colour + Vec3{0.9, 0.95, 1.2} * (2.5 * hash(row, column, 4));
    const double moon = std::hypot(direction.x - 0.16, direction.y - 0.41);
    if (moon < 0.024) {
        colour = Vec3{9.0, 8.6, 7.4} * (0.6 + 0.4 * cloud(direction.x * 90, direction.y * 90, 5));
    }
    return colour;
}

struct Facade {
    Vec3 paint;   // share of light that it reflects
    Vec3 shines;  // light that it emits
};

Vec3 windowLight(int column, int floor, int seed) {
    const double kind = hash(column, floor, seed);
    if (kind < 0.56) return {0.01, 0.014, 0.025};
    const double strength = 0.5 + 3.0 * hash(column, floor, seed + 1);
    if (kind < 0.86) return Vec3{1.0, 0.62, 0.28} * strength;
    if (kind < 0.95) return Vec3{0.6, 0.8, 1.0} * strength;
    return Vec3{0.25, 0.35, 1.0} * strength;
}

Vec3 bricks(double along, double up) {
    const double row = up / 0.09;
    const double shift = (cell(row) & 1) != 0 ? 0.5 : 0.0;
    const double column = along / 0.26 + shift;
    const bool mortar = fraction(row) < 0.14 || fraction(column) < 0.06;
    if (mortar) return {0.15, 0.14, 0.13};
    const double shade = 0.55 + 0.45 * hash(cell(column), cell(row), 21);
    return Vec3{0.20, 0.10, 0.07} * shade;
}

// A house front. `along` runs along the street, `up` from the ground.
Facade facade(double along, double up, int side) {
    const int house = cell(along / 9.0);
    const double tint = hash(house, side, 30);
    Facade front{bricks(along, up), {}};
    front.paint =
        mix(front.paint, Vec3{0.15, 0.15, 0.18} * (0.6 + 0.4 * cloud(along * 2, up * 2, 8)),
            tint < 0.5 ? 0.0 : 0.75);
    const double x = fraction(along / 2.25);
    const double y = fraction((up - 0.6) / 3.2);
    const bool window = x > 0.28 && x < 0.74 && y > 0.3 && y < 0.82 && up > 3.8;
    if (!window) return front;
    const bool bar = std::fabs(x - 0.51) < 0.018 || std::fabs(y - 0.6) < 0.012;
    if (bar) return {{0.05, 0.05, 0.05}, {}};
    return {{0.02, 0.02, 0.03}, windowLight(cell(along / 2.25), cell((up - 0.6) / 3.2), 40 + side)};
}

// Goods on shelves, lit in the shop's colour.
Vec3 shopWindow(double along, double up, int side, const Vec3& tone) {
    const int shelf = cell(up / 0.45);
    const int item = cell(along / 0.22);
    const double height = 0.25 + 0.6 * hash(item, shelf, 50 + side);
    const bool board = fraction(up / 0.45) < 0.07;
    const bool goods = fraction(up / 0.45) < height && fraction(along / 0.22) > 0.12;
    const Vec3 light = mix({1.0, 0.72, 0.42}, tone, 0.3);
    if (board) return light * 0.12;
    if (!goods) return light * 0.55;
    return light * mix(bulbColour(item + 7 * shelf), {0.5, 0.5, 0.5}, 0.4) * 0.6;
}

// Neon signs and shop windows on the ground floor, in front of the bricks.
Vec3 shopLight(double along, double up, int side) {
    const int shop = cell(along / 4.5);
    const double x = fraction(along / 4.5);
    const Vec3 colour = bulbColour(shop * 5 + side * 3);
    if (x < 0.1 || x > 0.9) return {};
    if (up > 0.7 && up < 2.5) return shopWindow(along, up, side, colour);
    const bool frame = std::fabs(up - 2.95) < 0.035 || std::fabs(up - 3.45) < 0.035;
    const bool letters = std::fabs(up - 3.2) < 0.16 && x > 0.18 && x < 0.82 &&
                         hash(cell(along * 7.0), shop, 60) > 0.45 && fraction(along * 7.0) > 0.35;
    return frame || letters ? colour * (letters ? 5.0 : 2.5) : Vec3{};
}

double roofHeight(double along, int side) {
    return 11.0 + 7.0 * hash(cell(along / 9.0), side, 70);
}

// Chalk lines: edges, and detail finer than a pixel of a small image.
Vec3 boardColour(double x, double y) {
    const bool frame = std::fabs(x) > 0.40 || std::fabs(y) > 0.60;
    if (frame) return Vec3{0.30, 0.17, 0.07} * (0.7 + 0.3 * noise(x * 12.0, y * 160.0, 80));
    const double line = (0.52 - y) / 0.105;
    const int row = cell(line);
    const bool chalkRow = row >= 0 && row < 10 && fraction(line) < 0.5;
    const double length = 0.25 + 0.42 * hash(row, 1, 81);
    const bool written = chalkRow && x + 0.34 < length && hash(cell(x * 95.0), row, 82) > 0.35 &&
                         hash(cell(x * 95.0), cell(line * 7.0), 83) > 0.25;
    const Vec3 chalk = row == 0 ? Vec3{1.0, 0.72, 0.25} : Vec3{0.85, 0.87, 0.9};
    const Vec3 slate = Vec3{0.022, 0.026, 0.028} * (0.6 + 0.8 * cloud(x * 30.0, y * 30.0, 84));
    return written ? chalk : slate;
}

double cobbleHeight(double x, double z) {
    const double row = z / 0.34;
    const double column = x / 0.30 + ((cell(row) & 1) != 0 ? 0.5 : 0.0);
    const double u = fraction(column) - 0.5;
    const double v = fraction(row) - 0.5;
    return 1.0 - smoothStep(0.3, 0.5, std::max(std::fabs(u), std::fabs(v)));
}

}  // namespace

Street::Street(double pixelAngle) : lanterns_(pixelAngle) {}

void Street::lookAtWalls(const Vec3& from, const Vec3& direction, Sight& sight) const {
    if (direction.x == 0.0) return;
    const int side = direction.x > 0.0 ? 1 : -1;
    const double way = (side * kWall - from.x) / direction.x;
    const Vec3 at = from + direction * way;
    const bool alley = fraction(at.z / 27.0) < 0.06;  // a gap between houses
    if (at.z >= kWallEnd || at.z >= sight.distance || alley) return;
    if (at.y < 0.0 || at.y > roofHeight(at.z, side)) return;
    const Facade front = facade(at.z, at.y, side);
    const Vec3 shops = shopLight(at.z, at.y, side);
    const Vec3 normal{static_cast<double>(-side), 0.0, 0.0};
    sight = {front.paint * lanterns_.lightAt(at, normal) + front.shines + shops, at.z};
}

void Street::lookAtSkyline(const Vec3& from, const Vec3& direction, Sight& sight) const {
    if (kSkyline >= sight.distance) return;
    const Vec3 at = from + direction * (kSkyline - from.z);
    const int tower = cell(at.x / 11.0);
    const double height = 14.0 + 44.0 * std::pow(hash(tower, 0, 100), 1.6);
    if (at.y < 0.0 || at.y > height || fraction(at.x / 11.0) < 0.05) return;
    const int column = cell(at.x / 1.1);
    const int floor = cell(at.y / 1.6);
    const bool window = fraction(at.x / 1.1) > 0.35 && fraction(at.y / 1.6) > 0.4;
    const bool lit = window && hash(column, floor, 101) > 0.62;
    const Vec3 haze{0.016, 0.012, 0.018};
    sight = {lit ? windowLight(column, floor, 102) * 1.4 + haze : haze, kSkyline};
}

void Street::lookAtBoard(const Vec3& from, const Vec3& direction, Sight& sight) const {
    if (kBoardDistance >= sight.distance || kBoardDistance <= from.z) return;
    const Vec3 at = from + direction * (kBoardDistance - from.z);
    const double x = at.x - 1.75;
    const double y = at.y - 0.98;
    if (std::fabs(x) > 0.44 || std::fabs(y) > 0.66) return;
    const Vec3 lantern{1.35, 1.05, 0.8};  // from the shop next to it
    const double falling = 0.55 + 0.45 * smoothStep(-0.7, 0.7, x + 0.5 * y);
    sight = {boardColour(x, y) * lantern * falling, kBoardDistance};
}

void Street::lookAtRailing(const Vec3& from, const Vec3& direction, Sight& sight) const {
    if (kRailingDistance >= sight.distance || kRailingDistance <= from.z) return;
    const Vec3 at = from + direction * (kRailingDistance - from.z);
    if (at.x > -0.55 || at.y > 1.46) return;
    const bool bar = std::fabs(fraction(at.x / 0.16) - 0.5) < 0.06;
    const bool rail = at.y > 1.40 || (at.y > 1.26 && at.y < 1.29);
    if (!bar && !rail) return;
    const double gleam = smoothStep(0.2, 1.0, noise(at.x * 5.0, at.y * 9.0, 110));
    sight = {mix({0.012, 0.012, 0.014}, {0.10, 0.075, 0.05}, gleam), kRailingDistance};
}

Sight Street::lookAboveStreet(const Vec3& from, const Vec3& direction) const {
    Sight sight{{}, kInfinity};
    lookAtWalls(from, direction, sight);
    lookAtSkyline(from, direction, sight);
    if (sight.distance == kInfinity) sight.colour = sky(direction);
    lookAtBoard(from, direction, sight);
    lookAtRailing(from, direction, sight);
    lanterns_.look(from, direction, sight);
    return sight;
}

// Wet cobbles: a dark surface that mirrors the scene, distorted by the stones.
Sight Street::lookAtStreet(const Vec3& from, const Vec3& direction, double distance) const {
    const Vec3 at = from + direction * (distance - from.z);
    const double stone = cobbleHeight(at.x, at.z);
    const double grain = cloud(at.x * 14.0, at.z * 14.0, 120);
    const Vec3 paint = Vec3{0.085, 0.085, 0.09} * (0.35 + 0.65 * stone) * (0.5 + grain);
    const double puddle = smoothStep(0.45, 0.62, cloud(at.x * 0.45, at.z * 0.3, 121));

    const double rough = (1.0 - puddle) * 0.5 + 0.05;
    Vec3 mirrored{direction.x + rough * 0.08 * (noise(at.x * 11.0, at.z * 11.0, 122) - 0.5),
                  -direction.y * (1.0 + rough * 1.6 * (noise(at.x * 9.0, at.z * 9.0, 123) - 0.5)),
                  1.0};
    const Sight reflection = lookAboveStreet(at, mirrored);
    const double grazing =
        std::pow(1.0 - std::fabs(direction.y) / std::sqrt(dot(direction, direction)), 3.0);
    const double shine = (0.04 + 0.5 * grazing) * (0.25 + 0.75 * puddle) * (0.4 + 0.6 * stone);
    const Vec3 mirroredLight = reflection.colour * shine;
    return {paint * lanterns_.lightAt(at, {0.0, 1.0, 0.0}) + mirroredLight, distance};
}

Sight Street::look(const Vec3& from, const Vec3& direction) const {
    const Sight above = lookAboveStreet(from, direction);
    if (direction.y >= 0.0) return above;
    const double street = from.z - from.y / direction.y;
    return street < std::min(above.distance, kHorizonEnd) ? lookAtStreet(from, direction, street)
                                                          : above;
}

}  // namespace scene
