// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "effect/RenderInfo.h"

// Determines what depends on the whole frame and renders it: the focal distance, if focus points
// define it, and the number of depth layers, which selects the instance of the pipeline. `format`
// is the output's pixel format. Returns the pipeline's error; if memory is exhausted (4),
// `out_data->return_msg` says so.
int renderFrame(PF_InData* in_data, PF_OutData* out_data, AEO::InData& context, RenderInfo& info,
                const int& format);
