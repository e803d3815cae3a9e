#pragma once
// Depth maps: pictures of 0..1 as the effect wants them, or scene distances as renderers write
// them.

#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include "headless/World.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace pictures {

// How the values of a map become 0..1.
struct DepthMapping {
    std::optional<double> near{};  // this distance becomes 1
    std::optional<double> far{};   // this one 0; may be infinite with `inverse`
    bool automatic = false;        // near and far are the range of the map's real distances
    bool inverse = false;          // even steps of 1/Z instead of Z

    bool maps() const { return automatic || near.has_value(); }
};

// Values from here on, infinities and what is no number stand for "nothing there": the sky.
inline constexpr float kSkyDistance = 1e9F;

// The values of a map that are no stand-ins for the sky.
struct DepthRange {
    double least = std::numeric_limits<double>::infinity();
    double most = -std::numeric_limits<double>::infinity();
    std::size_t sky = 0;  // values that stand for the sky

    bool any() const { return least <= most; }
};

DepthRange depthRange(const Picture& map);

// Replaces the colours of `map` by 0..1: near is 1, far and the sky are 0. Without a mapping only
// the sky is replaced. `range` is the map's own.
void applyMapping(Picture& map, const DepthMapping& mapping, const DepthRange& range);

// A map ready for the effect.
struct DepthMap {
    std::shared_ptr<headless::World> world;  // in the file's bits; float where values were mapped
    DepthRange range;                        // before the mapping
};

// Reads FILE, FILE:LAYER or FILE:CHANNEL. A single channel becomes grey. Warns where a float map
// has values outside 0..1 and no mapping is given. Throws as readPicture, and Failure where the
// range is asked of a map that is all sky.
DepthMap readDepthMap(const std::string& text, const DepthMapping& mapping, Messages& messages);

}  // namespace pictures
