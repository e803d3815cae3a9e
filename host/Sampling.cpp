// SPDX-License-Identifier: Apache-2.0
#include "host/Sampling.h"

namespace AEO {

// The suite's pointer is used without a check: no host of this effect lacks the suite.
// NOLINTBEGIN(clang-analyzer-core.NullDereference)

template <typename PixelType, typename Table, SuiteHolder<Table> InData::*holder>
PF_Err SamplingT<PixelType, Table, holder>::subpixel_sample(InData& context, PF_Fixed x, PF_Fixed y,
                                                            const PF_SampPB& params,
                                                            PixelType& pixel) {
    (context.*holder).acquire();
    return (context.*holder)
        .suite->subpixel_sample(context.in_data->effect_ref, x, y, &params, &pixel);
}

template <typename PixelType, typename Table, SuiteHolder<Table> InData::*holder>
PF_Err SamplingT<PixelType, Table, holder>::area_sample(InData& context, PF_Fixed x, PF_Fixed y,
                                                        const PF_SampPB& params, PixelType& pixel) {
    (context.*holder).acquire();
    return (context.*holder).suite->area_sample(context.in_data->effect_ref, x, y, &params, &pixel);
}

// NOLINTEND(clang-analyzer-core.NullDereference)

template struct SamplingT<PF_Pixel, PF_Sampling8Suite1, &InData::sampling8>;
template struct SamplingT<PF_Pixel16, PF_Sampling16Suite1, &InData::sampling16>;
template struct SamplingT<PF_PixelFloat, PF_SamplingFloatSuite1, &InData::samplingFloat>;

}  // namespace AEO
