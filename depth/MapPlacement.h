// SPDX-License-Identifier: Apache-2.0
#pragma once
// Where the frame lies in the depth map.

#include <algorithm>

#include "effect/RenderInfo.h"
#include "host/AEO_Parameter.h"

namespace map_placement {

// The position in the map of point (x, y) of the frame: the map is stretched over the frame, or
// centred at its own size.
inline AEO::PointValue position(const RenderInfo& info, const PF_LayerDef& map, double x,
                                double y) {
    const double fw = info.frameRect.right - info.frameRect.left;
    const double fh = info.frameRect.bottom - info.frameRect.top;
    const double mw = map.width;
    const double mh = map.height;
    if (info.placement == kPlacementStretch) {
        return {mw * 0.5 + (mw / fw) * (x - fw * 0.5), mh * 0.5 + (mh / fh) * (y - fh * 0.5)};
    }
    return {(x - fw * 0.5) + mw * 0.5, (y - fh * 0.5) + mh * 0.5};
}

// The position clamped into the map, at least (marginX, marginY) from its right and lower edge. NaN
// becomes 0.
inline AEO::PointValue clamped(const PF_LayerDef& map, const AEO::PointValue& p, double marginX,
                               double marginY) {
    return {std::min(map.width - marginX, std::max(0.0, p.x)),
            std::min(map.height - marginY, std::max(0.0, p.y))};
}

}  // namespace map_placement
