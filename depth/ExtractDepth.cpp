#include "depth/ExtractDepth.h"

#include <algorithm>
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
      halfHeight(areaHalfHeight) {}

// The map is placed relative to the frame, so the output's origin matters and the input's doesn't.
int ExtractDepth::iterate(int, int index, int) {
    const std::int32_t row = index / rect_.width();
    const std::int32_t col = index % rect_.width();
    const std::int32_t x = col + rect_.left + info_.output->origin_x;
    const std::int32_t y = row + rect_.top + info_.output->origin_y;
    const Position p = clampToMap(place(x, y));
    const AEO::Pixel::f32 pixel = map_.area_sample(p.x, p.y, halfWidth, halfHeight);
    depth_[static_cast<std::size_t>(index)] = channelValue(pixel, info_.depthChannel);
    return map_._err;
}

// The position of frame pixel (x, y) in the map, which is stretched over the frame, or centred at
// its own size.
ExtractDepth::Position ExtractDepth::place(double x, double y) const {
    const double fw = info_.frameRect.right - info_.frameRect.left;
    const double fh = info_.frameRect.bottom - info_.frameRect.top;
    const double mw = map_.world.width;
    const double mh = map_.world.height;
    if (info_.placement == kPlacementStretch) return {x * (mw / fw), y * (mh / fh)};
    return {x - (fw - mw) * 0.5, y - (fh - mh) * 0.5};
}

// Outside the map its border is repeated. A NaN position becomes 0.
ExtractDepth::Position ExtractDepth::clampToMap(Position p) const {
    return {std::min(map_.world.width - halfWidth, std::max(0.0, p.x)),
            std::min(map_.world.height - halfHeight, std::max(0.0, p.y))};
}
