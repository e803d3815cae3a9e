// SPDX-License-Identifier: Apache-2.0
#pragma once
// What sampling a kernel needs of each pixel type: its sampling suite and its channels.

#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/SuiteHandler.h"
#include "platform/Worlds.h"

// Samples the box of `params` around the 16.16 position (x, y) with the suite of the pixel's type
// and returns the host's status. Throws 516 when the host lacks the suite.
inline PF_Err areaSample(AEGP_SuiteHandler& suites, PF_ProgPtr effect, PF_Fixed x, PF_Fixed y,
                         const PF_SampPB& params, PF_Pixel& pixel) {
    return suites.PFSampling8Suite1()->area_sample(effect, x, y, &params, &pixel);
}

inline PF_Err areaSample(AEGP_SuiteHandler& suites, PF_ProgPtr effect, PF_Fixed x, PF_Fixed y,
                         const PF_SampPB& params, PF_Pixel16& pixel) {
    return suites.PFSampling16Suite1()->area_sample(effect, x, y, &params, &pixel);
}

inline PF_Err areaSample(AEGP_SuiteHandler& suites, PF_ProgPtr effect, PF_Fixed x, PF_Fixed y,
                         const PF_SampPB& params, PF_PixelFloat& pixel) {
    return suites.PFSamplingFloatSuite1()->area_sample(effect, x, y, &params, &pixel);
}

// The pixel's weight by `Custom Layer Channel`, on the scale of its own type, since kernels are
// normalised later. For the same reason the average is a plain sum (of integers or of floats).
template <class Pixel>
double channelWeight(const Pixel& pixel, std::int32_t channel) {
    switch (channel) {
        case kChannelRed:
            return static_cast<double>(pixel.red);
        case kChannelGreen:
            return static_cast<double>(pixel.green);
        case kChannelBlue:
            return static_cast<double>(pixel.blue);
        case kChannelAverage:
            return static_cast<double>(pixel.red + pixel.green + pixel.blue);
        default:
            return static_cast<double>(pixel.alpha);
    }
}
