// SPDX-License-Identifier: Apache-2.0
#pragma once
// How the values of a depth map become values from 0 to 1.

#include <cstddef>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace pictures {

// What the values of a map mean.
enum class DepthKind {
    kDistance,   // above 0, larger is farther
    kDisparity,  // proportional to 1/distance; 0 is infinitely far
    kNormalised  // 0..1 as the effect reads it; larger is nearer unless the effect inverts the map
};

// "distance", "disparity" or "normalised".
const char* depthKindName(DepthKind kind);

// How the values of a map are mapped to 0..1: near is 1. Without near and far the range of the map
// is taken. A normalised map isn't mapped.
struct DepthMapping {
    std::optional<DepthKind> kind{};  // without it, the file decides
    bool ofShot = false;              // other maps may have the range that this one lacks
    // Takes the place of the file's own decision: other maps of the shot are of this kind.
    std::optional<DepthKind> found{};
    std::optional<double> near{};  // the distance or disparity mapped to 1
    std::optional<double> far{};   // the one mapped to 0; may be infinite with `inverse`
    bool automatic = false;        // take the range of the map even if values don't demand it
    bool inverse = false;          // linear in 1/distance instead of distance
    // Takes the place of near, far and inverse: the value for a distance above 0, which is infinite
    // where nothing is. Results are clamped to 0..1.
    std::function<double(double distance)> curve{};

    // Whether it treats values as distances or disparities.
    bool maps() const { return automatic || inverse || near.has_value() || curve; }
};

// Throws UsageError, naming the options of the command line, for a mapping whose parts exclude each
// other or whose near and far form no range of `kind`.
void requireConsistent(const DepthMapping& mapping, DepthKind kind);

// The value in a map where nothing is; any value for which isNothing() holds means the same.
inline constexpr float kNothing = std::numeric_limits<float>::infinity();

// NaN, infinities and absolute values from 1e9, by which renderers mark the sky; in distances also
// 0 and below, in disparities below 0.
bool isNothing(double value, DepthKind kind);

// The range of a map's values where something is.
struct DepthRange {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();
    std::size_t nothing = 0;  // number of pixels where nothing is

    bool any() const { return least <= most; }
    void add(double value, DepthKind kind);
    void add(const DepthRange& other);
};

// The function from the values of one map to the effect's scale.
class DepthCurve {
public:
    // `range` is that of the map. `inverted` means that the effect inverts the map: far is then 1
    // in a normalised map, and 0 in any other.
    DepthCurve(DepthKind kind, const DepthMapping& mapping, const DepthRange& range, bool inverted);

    // 1 for near, 0 for far, and values outside 0..1 beyond these. Where nothing is, it is far.
    double position(double value) const;
    // The same, clamped: the value in the map that the effect gets.
    float operator()(double value) const;

private:
    double scaled(double value) const;
    double share(double value) const;

    DepthKind kind_;
    std::function<double(double)> curve_;
    bool inverse_;
    double near_;
    double far_;
    double nothing_;
};

}  // namespace pictures
