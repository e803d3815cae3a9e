// SPDX-License-Identifier: Apache-2.0
#include "occlusion/BlurScale.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

#include "pictures/depth/LensLayers.h"

namespace occlusion {
namespace {

constexpr int kSteps = 1 << 14;
constexpr double kProfileReach = 0.9999;  // of the control's range, which the effect doesn't exceed

}  // namespace

BlurScale::BlurScale(const headless::ParameterSet& parameters, double downsample, A_Time time) {
    const auto control = [&](const char* label) {
        return parameters.value(parameters.find(label), time);
    };
    const pictures::LensLayers layers(
        static_cast<int>(control("Resolution")),
        (control("Blur Radius") + pictures::kAddedRadius) * downsample);
    const double focus = control("Focal Distance");
    const double exponent =
        std::tan((control("Profile") * kProfileReach + 1.0) * std::numbers::pi / 4.0);
    for (int step = 0; step <= kSteps; ++step) {
        const double nearness = static_cast<double>(step) / kSteps;
        const double away = std::fabs(nearness - focus) / std::max(focus, 1.0 - focus);
        const double rest = std::pow(std::max(1.0 - away, 0.0), exponent);
        const double radius = layers.radiusAt(1.0 - rest) / downsample;
        radii_.push_back(static_cast<float>(nearness < focus ? -radius : radius));
    }
}

float BlurScale::signedRadius(float nearness) const {
    const float place = std::clamp(nearness, 0.0F, 1.0F) * static_cast<float>(kSteps);
    const int step = std::min(static_cast<int>(place), kSteps - 1);
    const auto i = static_cast<std::size_t>(step);
    return std::lerp(radii_[i], radii_[i + 1], place - static_cast<float>(step));
}

}  // namespace occlusion
