// SPDX-License-Identifier: Apache-2.0
#include "cli/render/OverscanLayer.h"

#include <utility>
#include <vector>

namespace cli {
namespace {

// All keys of a point, in pixels of the layer.
void movePoint(headless::ParameterSet& parameters, int index, const pictures::Picture& image) {
    const bool percent = parameters.inPercent(index);
    std::vector<headless::Keyframe> keys = parameters.keys(index);
    for (headless::Keyframe& key : keys) {
        const double x = percent ? key.value * image.display.width() / 100 : key.value;
        const double y = percent ? key.y * image.display.height() / 100 : key.y;
        key.value = x + image.display.left - image.window.left;
        key.y = y + image.display.top - image.window.top;
    }
    parameters.setKeys(index, std::move(keys));
}

}  // namespace

void movePointsToLayer(headless::ParameterSet& parameters, const pictures::Picture& image) {
    if (image.window == image.display) return;
    for (const headless::ParameterInfo& info : parameters.infos()) {
        if (info.type == PF_Param_POINT) movePoint(parameters, info.index, image);
    }
}

}  // namespace cli
