// SPDX-License-Identifier: Apache-2.0
#include "depth/ExtractDepth.h"

#include <cstddef>
#include <cstdint>

#include "depth/MapPlacement.h"

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
      halfHeight(areaHalfHeight) {}

// The map is placed relative to the frame, so the output's origin matters and the input's doesn't.
// Outside the map its border is repeated.
int ExtractDepth::iterate(int, int index, int) {
    const std::int32_t row = index / rect_.width();
    const std::int32_t col = index % rect_.width();
    const std::int32_t x = col + rect_.left + info_.output->origin_x;
    const std::int32_t y = row + rect_.top + info_.output->origin_y;
    const AEO::PointValue p = map_placement::clamped(
        map_.world, map_placement::position(info_, map_.world, x, y), halfWidth, halfHeight);
    const AEO::Pixel::f32 pixel = map_.area_sample(p.x, p.y, halfWidth, halfHeight);
    depth_[static_cast<std::size_t>(index)] = channelValue(pixel, info_.depthChannel);
    return map_._err;
}
