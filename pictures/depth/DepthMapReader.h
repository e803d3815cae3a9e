// SPDX-License-Identifier: Apache-2.0
#pragma once
// Reads depth maps: pictures with values 0..1, as the effect expects, or scene distances, as
// renderers write them.

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "headless/World.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace pictures {

// How the values of a map are mapped to 0..1.
struct DepthMapping {
    std::optional<double> near{};  // the distance mapped to 1
    std::optional<double> far{};   // the distance mapped to 0; may be infinite with `inverse`
    bool automatic = false;        // near and far are the range of the map's distances without sky
    bool inverse = false;          // linear in 1/Z instead of Z

    bool maps() const { return automatic || near.has_value(); }
};

// Absolute values from here on, infinities and NaN mean "nothing there": the sky.
inline constexpr float kSkyDistance = 1e9F;

// The range of a map's values, the sky excluded.
struct DepthRange {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();
    std::size_t sky = 0;  // number of values that mean the sky

    bool any() const { return least <= most; }
};

DepthRange depthRange(const Picture& map);

// Maps the colours of `map` to 0..1: near is 1, far and the sky are 0. Without a mapping only the
// sky is replaced. `range` is that of the map.
void applyMapping(Picture& map, const DepthMapping& mapping, const DepthRange& range);

// A map ready for the effect.
struct DepthMap {
    std::shared_ptr<headless::World> world;  // in the file's bits; float where values were mapped
    DepthRange range;                        // before the mapping
};

// Reads FILE, FILE:LAYER or FILE:CHANNEL. A single channel becomes grey. Warns if a float map has
// values outside 0..1 and no mapping is given. Throws what readPicture throws, and Failure if the
// automatic range finds only sky, or with `inverse` distances that aren't above 0.
DepthMap readDepthMap(const std::string& text, const DepthMapping& mapping, Messages& messages);

}  // namespace pictures
