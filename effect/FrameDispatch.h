#pragma once

#include "effect/RenderInfo.h"

// Settles what depends on the whole frame and renders it: the focal distance, if focus points give
// it, and the number of depth layers, which picks the instance of the pipeline. `format` is the
// output's pixel format. Returns the pipeline's error; for exhausted memory (4) a sentence stands
// in `out_data->return_msg`.
int renderFrame(PF_InData* in_data, PF_OutData* out_data, AEO::InData& context, RenderInfo& info,
                const int& format);
