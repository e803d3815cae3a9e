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

// All distances of the map, and infinity if there are pixels where nothing is. At most one pixel in
// 10,000, the nearest, is left out if the others need no more than two thirds of the blur: such
// strays would take up most of the effect's scale. The map holds distances, at least one.
LensRange lensRange(const DepthSource& source, const LensView& view);

// The number of pixels whose blur is larger than what the controls reach.
std::size_t countBeyond(const DepthSource& source, const LensView& view, const LensBlur& blur);

}  // namespace pictures
