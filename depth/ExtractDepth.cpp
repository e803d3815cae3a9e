// SPDX-License-Identifier: Apache-2.0
#include "depth/ExtractDepth.h"

#include <cstddef>
#include <cstdint>

namespace {

// The sample's value by the map's `Channel`, alpha for an unknown one.
float channelValue(const AEO::Pixel::f32& pixel, std::int32_t channel) {
    switch (channel) {
        case kChannelRed:
            return pixel.red;
        case kChannelGreen:
            return pixel.green;
        case kChannelBlue:
            return pixel.blue;
        case kChannelAverage:
            return (pixel.red + pixel.green + pixel.blue) / 3.0F;
        default:
            return pixel.alpha;
    }
}

}  // namespace

ExtractDepth::ExtractDepth(const RenderInfo& info, const AEO::EffectWorld& map, const iRect& rect,
                           AEO::Vector<float>& depth, double areaHalfWidth, double areaHalfHeight)
    : info_(info),
      map_(map),
      rect_(rect),
      depth_(depth),
      halfWidth(areaHalfWidth),
      halfHeight(areaHalfHeight),
      mapping_(info, map.world),
      box_(map.boxParams(areaHalfWidth, areaHalfHeight)) {}

// The map is placed relative to the frame, so the output's origin matters and the input's doesn't.
// Outside the map its border is repeated.
int ExtractDepth::iterate(int, int index, int) {
    const auto width = static_cast<std::uint32_t>(rect_.width());
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(index) / width);
    const auto col = static_cast<std::int32_t>(static_cast<std::uint32_t>(index) % width);
    const std::int32_t x = col + rect_.left + info_.output->origin_x;
    const std::int32_t y = row + rect_.top + info_.output->origin_y;
    const AEO::PointValue p =
        map_placement::clamped(map_.world, mapping_.position(x, y), halfWidth, halfHeight);
    depth_[static_cast<std::size_t>(index)] =
        channelValue(map_.area_sample(p.x, p.y, box_), info_.depthChannel);
    return map_._err;
}
