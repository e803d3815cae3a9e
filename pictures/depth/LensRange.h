// SPDX-License-Identifier: Apache-2.0
#pragma once
// Which distances of a map a lens's blur is chosen for.

#include <cstddef>

#include "pictures/depth/DepthMapReader.h"
#include "pictures/depth/LensBlur.h"

namespace pictures {

struct LensRange {
    DistanceSpan span;
    std::size_t strays = 0;  // pixels nearer than the span
};

// All distances of the map, and infinity if there are pixels where nothing is. Stray pixels are
// left out, since they would take up most of the effect's scale: they are among the nearest, one in
// 10,000, and their blur is more than half as large again as any of the other pixels'. The map
// holds distances, at least one.
LensRange lensRange(const DepthSource& source, const LensView& view);

// The number of pixels in the span whose blur is larger than what the controls reach.
std::size_t countBeyond(const DepthSource& source, const DistanceSpan& span, const LensBlur& blur);

}  // namespace pictures
