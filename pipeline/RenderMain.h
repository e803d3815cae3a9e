// SPDX-License-Identifier: Apache-2.0
#pragma once
// The render driver: blurs one frame.

#include <cstddef>
#include <utility>

#include "effect/RenderInfo.h"

// Renders one frame with N depth layers, 1 to 16 (1 when there is no depth map), and writes every
// pixel of `output` once. Builds the kernel bank, then convolves tile after tile on the host's
// threads and reports progress after each.
//
// `pixelFormat` is the output's format. `info`, the worlds and `context` belong to the caller and
// stay alive throughout. All memory comes from the host and is freed on every exit.
//
// Returns 0, or 4 when memory is short (for the two large buffers the host's info panel then says
// so), or what a stage or the progress callback returned. Tiles that were finished before an error
// stay written. An int with a host code that a stage throws passes through.
template <std::size_t N>
int RenderMainT(PF_InData* in_data, AEO::InData& context, PF_LayerDef* input, PF_LayerDef* output,
                const RenderInfo& info, const int& pixelFormat);

// The layer counts that this build has instances for. All of 1 to 16, except in builds that only
// check that the code compiles or runs clean.
using BuiltLayerCounts = std::index_sequence<ORBEL_LAYER_COUNT_LIST>;
