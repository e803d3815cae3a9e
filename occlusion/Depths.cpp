// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Depths.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "pictures/depth/DepthMapReader.h"

namespace occlusion {
namespace {

float channelOf(const PF_PixelFloat& pixel, pictures::MapChannel channel) {
    switch (channel) {
        case pictures::MapChannel::kRed:
            return pixel.red;
        case pictures::MapChannel::kGreen:
            return pixel.green;
        case pictures::MapChannel::kBlue:
            return pixel.blue;
        case pictures::MapChannel::kAlpha:
            return pixel.alpha;
        case pictures::MapChannel::kAverage:
            break;
    }
    return (pixel.red + pixel.green + pixel.blue) / 3.0F;
}

}  // namespace

Depths readDepths(const headless::ParameterSet& parameters, int width, int height, A_Time time) {
    const auto map = parameters.layer(parameters.find("Layer"));
    if (map == nullptr || map->width() != width || map->height() != height) {
        throw std::invalid_argument("the depth map must be as large as the picture");
    }
    const auto channel = static_cast<pictures::MapChannel>(
        static_cast<int>(parameters.value(parameters.find("Channel"), time)));
    const bool inverted = parameters.value(parameters.find("Invert Depth Map"), time) != 0.0;
    Depths depths{width, height, {}};
    depths.nearness.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float value = channelOf(map->get(x, y), channel);
            const float nearness = std::clamp(inverted ? 1.0F - value : value, 0.0F, 1.0F);
            depths.nearness.push_back(std::isnan(nearness) ? 0.0F : nearness);
        }
    }
    return depths;
}

}  // namespace occlusion
