// SPDX-License-Identifier: Apache-2.0
#pragma once
// Where the frame lies in the depth map.

#include <algorithm>

#include "effect/RenderInfo.h"
#include "host/AEO_Parameter.h"

namespace map_placement {

// From points of the frame to positions in the map: the map is stretched over the frame, or centred
// at its own size.
class Mapping {
public:
    Mapping(const RenderInfo& info, const PF_LayerDef& map)
        : halfFrame_{(info.frameRect.right - info.frameRect.left) * 0.5,
                     (info.frameRect.bottom - info.frameRect.top) * 0.5},
          halfMap_{map.width * 0.5, map.height * 0.5} {
        if (info.placement == kPlacementStretch) {
            scale_ = {halfMap_.x / halfFrame_.x, halfMap_.y / halfFrame_.y};
        }
    }

    AEO::PointValue position(double x, double y) const {
        return {halfMap_.x + scale_.x * (x - halfFrame_.x),
                halfMap_.y + scale_.y * (y - halfFrame_.y)};
    }

private:
    AEO::PointValue halfFrame_;
    AEO::PointValue halfMap_;
    AEO::PointValue scale_{1.0, 1.0};
};

// The position clamped into the map, at least (marginX, marginY) from its right and lower edge. NaN
// becomes 0.
inline AEO::PointValue clamped(const PF_LayerDef& map, const AEO::PointValue& p, double marginX,
                               double marginY) {
    return {std::min(map.width - marginX, std::max(0.0, p.x)),
            std::min(map.height - marginY, std::max(0.0, p.y))};
}

}  // namespace map_placement
