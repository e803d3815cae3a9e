// SPDX-License-Identifier: Apache-2.0
#pragma once
// The focal distance of a frame whose user points at the image instead of entering a distance.
//
// In the effect only the frame dispatch includes this: the function is local to the including file.

#include <algorithm>
#include <cstdint>

#include "depth/MapPlacement.h"
#include "effect/RenderInfo.h"
#include "host/EffectWorld.h"

namespace FocusPoint {

// The map pixel under frame pixel (x, y), clamped to the map. An unknown placement reads the first.
inline AEO::PointValue mapPosition(const RenderInfo& info, const PF_LayerDef& map, double x,
                                   double y) {
    const bool known = info.placement == kPlacementCenter || info.placement == kPlacementStretch;
    const AEO::PointValue q =
        known ? map_placement::Mapping(info, map).position(x, y) : AEO::PointValue{0.0, 0.0};
    return map_placement::clamped(map, q, 1.0, 1.0);
}

// The sample's value by the map's `Channel`; an unknown channel reads 0.
inline double channelValue(const AEO::Pixel::f32& pixel, std::int32_t channel) {
    switch (channel) {
        case kChannelRed:
            return static_cast<double>(pixel.red);
        case kChannelGreen:
            return static_cast<double>(pixel.green);
        case kChannelBlue:
            return static_cast<double>(pixel.blue);
        case kChannelAlpha:
            return static_cast<double>(pixel.alpha);
        case kChannelAverage:
            return static_cast<double>(pixel.red + pixel.green + pixel.blue) / 3.0;
        default:
            return 0.0;
    }
}

// A line from d0 at t = 0 to d1 at t = 1. Outside, parabolas continue it without a kink and reach
// the limits of the focal range, -1 and 2, where the slider ends (t = -1 and t = 2).
inline double interpolate(double d0, double d1, double t) {
    const bool rising = d1 >= d0;
    if (0.0 > t) {
        const double k = rising ? -1.0 : 2.0;
        return (d1 - d0) * t + (d1 - (d0 + d0) + k) * t * t + d0;
    }
    if (t > 1.0) {
        const double k = rising ? 2.0 : -1.0;
        const double u = t - 1.0;
        return u * (d1 - d0) + (d0 - (d1 + d1) + k) * u * u + d1;
    }
    return d1 * t + d0 * (1.0 - t);
}

}  // namespace FocusPoint

// The focal distance, on the scale of `Focal Distance`, from the two focus points on `map` and the
// interpolation between them. A sample that fails leaves its error in the map object.
[[maybe_unused]] static double forcusPointToDistance(const RenderInfo& info,
                                                     const AEO::EffectWorld& map) {
    struct S {
        // The distance, 0 to 1, that puts the frame pixel `point` (x, then y) in focus: the map's
        // value there. The store stage inverts where this does not, since it measures from
        // 1 - focalDistance.
        static double f(const RenderInfo& info, const AEO::EffectWorld& map, const double* point) {
            const AEO::PointValue q = FocusPoint::mapPosition(info, map.world, point[0], point[1]);
            const AEO::Pixel::f32 pixel = map.subpixel_sample(q.x, q.y);
            const double v = FocusPoint::channelValue(pixel, info.depthChannel);
            const double r = info.invertDepth ? 1.0 - v : v;
            return std::min(1.0, std::max(0.0, r));
        }
    };
    const double point0[] = {info.focusPoint0.x, info.focusPoint0.y};
    const double point1[] = {info.focusPoint1.x, info.focusPoint1.y};
    const double d0 = S::f(info, map, point0);
    const double d1 = S::f(info, map, point1);
    return FocusPoint::interpolate(d0, d1, info.focusInterpolation);
}
