// SPDX-License-Identifier: Apache-2.0
#include "pictures/apertures/Apertures.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "pictures/apertures/Flaws.h"
#include "pictures/apertures/Outlines.h"

namespace apertures {
namespace {

Outline circleFor(const Coverage& coverage, double radius) {
    return circle(radius, coverage.cornersOfCircle(radius));
}

// Circles of many radii, from the corners of one: a smaller circle needs fewer of them.
class Circles {
public:
    explicit Circles(const Coverage& coverage)
        : coverage_(coverage),
          corners_(circle(1.0, static_cast<int>(std::bit_ceil(cornersFor(1.0))))) {}

    Outline at(double radius) const {
        const std::size_t step = std::bit_floor(corners_.size() / cornersFor(radius));
        Outline outline;
        outline.reserve(corners_.size() / step);
        for (std::size_t i = 0; i < corners_.size(); i += step) {
            outline.push_back({corners_[i].x * radius, corners_[i].y * radius});
        }
        return outline;
    }

private:
    std::size_t cornersFor(double radius) const {
        return static_cast<std::size_t>(coverage_.cornersOfCircle(radius));
    }

    const Coverage& coverage_;
    Outline corners_;
};

// Adds light that depends on the radius as discs on top of each other, one every half pixel or
// narrower; `steps` is their least number.
template <class Profile>
void addProfile(Coverage& coverage, int steps, const Profile& profile) {
    const Circles circles(coverage);
    const int count = std::max(coverage.size(), steps);
    for (int i = 0; i < count; ++i) {
        const double outside = i + 1 < count ? profile((i + 1.5) / count) : 0.0;
        const double weight = profile((i + 0.5) / count) - outside;
        if (weight != 0.0) coverage.add(circles.at((i + 1.0) / count), weight);
    }
}

// 0 before `begin`, 1 after `end`, and a smooth rise between.
double smoothRise(double begin, double end, double x) {
    const double t = std::clamp((x - begin) / (end - begin), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

std::uint32_t seedOf(const Values& values) {
    return static_cast<std::uint32_t>(values.at("seed"));
}

int countOf(const Values& values) {
    return static_cast<int>(values.at("count"));
}

double turnsOf(const Values& values) {
    return values.at("rotation") / 360.0;
}

void paintRing(Coverage& coverage, const Values& values) {
    coverage.add(circleFor(coverage, 1.0), 1.0);
    const double obstruction = values.at("obstruction");
    if (obstruction > 0.0) coverage.add(circleFor(coverage, obstruction), -1.0);
}

void paintSoft(Coverage& coverage, const Values& values) {
    const double begin = 1.0 - values.at("falloff");
    addProfile(coverage, 256, [&](double radius) { return 1.0 - smoothRise(begin, 1.0, radius); });
}

void paintBubble(Coverage& coverage, const Values& values) {
    const double begin = 1.0 - values.at("rim");
    const double centre = values.at("centre");
    addProfile(coverage, 256, [&](double radius) {
        return centre + (1.0 - centre) * smoothRise(begin, 1.0, radius);
    });
}

void paintBlades(Coverage& coverage, const Values& values) {
    const Outline outline =
        bladed(countOf(values), values.at("curvature"), coverage.cornersOfCircle(1.0));
    coverage.add(rotated(outline, turnsOf(values)), 1.0);
}

void paintAnamorphic(Coverage& coverage, const Values& values) {
    const Outline outline = ellipse(1.0 / values.at("squeeze"), 1.0, coverage.cornersOfCircle(1.0));
    coverage.add(rotated(outline, turnsOf(values)), 1.0);
}

void paintStar(Coverage& coverage, const Values& values) {
    coverage.add(rotated(star(countOf(values), values.at("inner")), turnsOf(values)), 1.0);
}

void paintHeart(Coverage& coverage, const Values& values) {
    coverage.add(rotated(heart(coverage.cornersOfCircle(1.0)), turnsOf(values)), 1.0);
}

void paintOnion(Coverage& coverage, const Values& values) {
    const Rings rings(countOf(values), seedOf(values));
    const double strength = values.at("strength");
    addProfile(coverage, 16 * countOf(values),
               [&](double radius) { return 1.0 - strength * rings.darkness(radius); });
}

void paintDust(Coverage& coverage, const Values& values) {
    coverage.add(circleFor(coverage, 1.0), 1.0);
    for (const Speck& speck : scatterSpecks(countOf(values), seedOf(values))) {
        coverage.add(speck.outline, -values.at("strength") * speck.darkness);
    }
}

Option seed() {
    return {"seed", "another number makes another lens", 0, 2147483647, 1, true};
}

Option rotation() {
    return {"rotation", "degrees clockwise", -360, 360, 0};
}

std::vector<Kind> makeKinds() {
    return {
        {"ring",
         "a mirror lens, dark in the middle",
         {{"obstruction", "radius of the dark middle", 0, 0.95, 0.4}},
         paintRing},
        {"soft",
         "an apodised lens, bright in the middle",
         {{"falloff", "share of the radius over which the light fades", 0.01, 1, 1}},
         paintSoft},
        {"bubble",
         "a lens that draws a bright rim",
         {{"centre", "light in the middle, that of the rim being 1", 0, 1, 0.3},
          {"rim", "width of the rim", 0.01, 1, 0.2}},
         paintBubble},
        {"blades",
         "a diaphragm",
         {{"count", "number of blades", 3, 24, 6, true},
          {"curvature", "of their edges: straight 0, round 1", 0, 1, 0.3},
          rotation()},
         paintBlades},
        {"anamorphic",
         "an ellipse, as of anamorphic lenses",
         {{"squeeze", "height over width", 1, 4, 2}, rotation()},
         paintAnamorphic},
        {"star",
         "a star",
         {{"count", "number of points", 3, 24, 5, true},
          {"inner", "radius of the notches", 0.05, 0.95, 0.4},
          rotation()},
         paintStar},
        {"heart", "a heart", {rotation()}, paintHeart},
        {"onion",
         "an aspheric lens, whose surface leaves rings",
         {{"count", "number of rings", 1, 100, 14, true},
          {"strength", "how dark they are", 0, 1, 0.4},
          seed()},
         paintOnion},
        {"dust",
         "a lens with dust on it",
         {{"count", "number of specks", 0, 500, 60, true},
          {"strength", "how dark they are", 0, 1, 0.7},
          seed()},
         paintDust},
    };
}

}  // namespace

const std::vector<Kind>& kinds() {
    static const std::vector<Kind> kKinds = makeKinds();
    return kKinds;
}

Values defaultsOf(const Kind& kind) {
    Values values;
    for (const Option& option : kind.options) values[option.name] = option.fallback;
    return values;
}

std::vector<float> draw(const Kind& kind, const Values& values, int size,
                        const std::atomic<bool>& cancel) {
    Coverage coverage(size, cancel);
    kind.paint(coverage, values);
    return coverage.values();
}

Sheet drawSheet(int size, const std::atomic<bool>& cancel) {
    constexpr int kColumns = 3;
    const int count = static_cast<int>(kinds().size());
    const int gap = size / 8;
    const auto extent = [&](int tiles) { return tiles * (size + gap) + gap; };
    Sheet sheet{extent(kColumns), extent((count + kColumns - 1) / kColumns), {}};
    const auto width = static_cast<std::size_t>(sheet.width);
    sheet.pixels.resize(width * static_cast<std::size_t>(sheet.height));
    for (int i = 0; i < count; ++i) {
        const Kind& kind = kinds()[static_cast<std::size_t>(i)];
        const std::vector<float> tile = draw(kind, defaultsOf(kind), size, cancel);
        const auto left = static_cast<std::size_t>(extent(i % kColumns));
        const auto top = static_cast<std::size_t>(extent(i / kColumns));
        for (std::size_t y = 0; y < static_cast<std::size_t>(size); ++y) {
            std::copy_n(tile.data() + y * static_cast<std::size_t>(size), size,
                        sheet.pixels.data() + (top + y) * width + left);
        }
    }
    return sheet;
}

}  // namespace apertures
