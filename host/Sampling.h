// SPDX-License-Identifier: Apache-2.0
#pragma once
// The host's three sampling suites, one for each pixel type.

#include "host/AEO_Base.h"
#include "host/SuiteHolder.h"

namespace AEO {

// Sampling calls for pixels of type `PixelType`, through the suite in the context's `holder`. The
// suite is acquired here if the context couldn't get it; once it is held, calls may come from many
// threads at once. Positions are 16.16; each call returns the host's result, and `pixel` is filled
// only if that is 0.
template <typename PixelType, typename Table, SuiteHolder<Table> InData::*holder>
struct SamplingT {
    static PF_Err subpixel_sample(InData& context, PF_Fixed x, PF_Fixed y, const PF_SampPB& params,
                                  PixelType& pixel);
    static PF_Err area_sample(InData& context, PF_Fixed x, PF_Fixed y, const PF_SampPB& params,
                              PixelType& pixel);
};

using Sampling8 = SamplingT<PF_Pixel, PF_Sampling8Suite1, &InData::sampling8>;
using Sampling16 = SamplingT<PF_Pixel16, PF_Sampling16Suite1, &InData::sampling16>;
using SamplingFloat = SamplingT<PF_PixelFloat, PF_SamplingFloatSuite1, &InData::samplingFloat>;

extern template struct SamplingT<PF_Pixel, PF_Sampling8Suite1, &InData::sampling8>;
extern template struct SamplingT<PF_Pixel16, PF_Sampling16Suite1, &InData::sampling16>;
extern template struct SamplingT<PF_PixelFloat, PF_SamplingFloatSuite1, &InData::samplingFloat>;

}  // namespace AEO
