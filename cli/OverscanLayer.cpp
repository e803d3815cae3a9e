// SPDX-License-Identifier: Apache-2.0
#include "cli/OverscanLayer.h"

namespace cli {
namespace {

void movePoint(headless::ParameterSet& parameters, int index, const pictures::Picture& image) {
    constexpr double kFixedOne = 65536.0;
    const headless::Geometry display{.width = image.display.width(),
                                     .height = image.display.height()};
    const PF_PointDef point = parameters.evaluate(index, {0, 1}, display).u.td;
    parameters.setPoint(index, point.x_value / kFixedOne + image.display.left - image.window.left,
                        point.y_value / kFixedOne + image.display.top - image.window.top);
}

}  // namespace

void movePointsToLayer(headless::ParameterSet& parameters, const pictures::Picture& image) {
    if (image.window == image.display) return;
    for (const headless::ParameterInfo& info : parameters.infos()) {
        if (info.type == PF_Param_POINT) movePoint(parameters, info.index, image);
    }
}

}  // namespace cli
