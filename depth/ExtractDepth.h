// SPDX-License-Identifier: Apache-2.0
#pragma once
// Brings the depth map into the geometry of a block.

#include "depth/MapPlacement.h"
#include "effect/RenderInfo.h"
#include "host/EffectWorld.h"
#include "host/Vector.h"
#include "pipeline/BlockLayout.h"

// Writes the map's raw channel value under each pixel of a block: neither inverted nor clamped nor
// compared with the focal distance. Integer maps are scaled to 0..1, float maps are taken as they
// are. Pixels beyond the map repeat its border. Item i of the iteration is pixel i of the block.
class ExtractDepth {
public:
    // Keeps the references. `rect` is the block in the output world's coordinates, `depth` holds
    // one value for each of its pixels. `areaHalfWidth` and `areaHalfHeight` are half the extent of
    // one frame pixel, in pixels of the map.
    ExtractDepth(const RenderInfo& info, const AEO::EffectWorld& map, const iRect& rect,
                 AEO::Vector<float>& depth, double areaHalfWidth, double areaHalfHeight);

    // Fills depth[index]. Returns the first error of the map object, 0 for none.
    int iterate(int thread, int index, int count);

private:
    const RenderInfo& info_;
    const AEO::EffectWorld& map_;
    const iRect& rect_;
    AEO::Vector<float>& depth_;
    double halfWidth;
    double halfHeight;
    const map_placement::Mapping mapping_;
    const PF_SampPB box_;
};
