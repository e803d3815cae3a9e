// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the effect finds in a depth map.

#include <vector>

#include "inspect/Spots.h"

namespace inspect {

// The nearness, ascending, at which a single layer of depth blurs: between two of them a spot is
// a mix of two discs, so that its second moment is smooth there and bends at each. Layers that lie
// closer than a sixtieth may be missed. Throws as measureSpots.
std::vector<double> measureLayers(const Bench& bench, const Told& told = {});

// How much the effect takes each pixel of the bench's depth map for an outline, 0 to 1, row by row:
// the part of its value that a grey picture loses there by the bench's Remove Edge Leak and Detect
// Edge Threshold, at an Exposure of 10. Empty if that is off. The map is as large as the bench's
// input. Throws as measureSpots.
std::vector<float> measureEdges(const Bench& bench);

}  // namespace inspect
