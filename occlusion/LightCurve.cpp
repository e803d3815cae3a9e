// SPDX-License-Identifier: Apache-2.0
#include "occlusion/LightCurve.h"

#include <algorithm>
#include <cmath>

namespace occlusion {

LightCurve::LightCurve(const headless::ParameterSet& parameters, A_Time time)
    : exposure_(parameters.value(parameters.find("Exposure"), time)),
      threshold_(parameters.value(parameters.find("Threshold"), time)) {}

double LightCurve::expand(double colour) const {
    if (exposure_ == 0.0 || colour < threshold_) return colour;
    return std::expm1((colour - threshold_) * exposure_) / exposure_ + threshold_;
}

double LightCurve::compress(double light) const {
    if (exposure_ == 0.0 || light < threshold_) return light;
    // Below zero, light approaches a limit: any more is an error of rounding.
    constexpr double kLimit = -1.0 + 1e-7;
    return std::log1p(std::max((light - threshold_) * exposure_, kLimit)) / exposure_ + threshold_;
}

}  // namespace occlusion
