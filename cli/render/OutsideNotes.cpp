// SPDX-License-Identifier: Apache-2.0
#include "cli/render/OutsideNotes.h"

#include "cli/options/ParameterOptions.h"
#include "cli/render/RenderWindows.h"
#include "pictures/Text.h"

namespace cli {
namespace {

std::string ofTheImage(int width, int height) {
    return "the image, which has " + std::to_string(width) + "x" + std::to_string(height) +
           " pixels";
}

std::string regionText(const pictures::Window& window) {
    return std::to_string(window.left) + "," + std::to_string(window.top) + "," +
           std::to_string(window.width()) + "," + std::to_string(window.height());
}

}  // namespace

void noteCutRegion(const pictures::Window& region, const pictures::Window& limits,
                   pictures::Messages& messages) {
    const pictures::Window inside = intersection(region, limits);
    if (inside == region || inside.empty()) return;
    messages.note("--region is cut to " + regionText(inside) +
                  ": the rest is outside the image, which has " + limitsText(limits));
}

void noteOutsidePoints(const headless::ParameterSet& parameters, A_Time time, int width, int height,
                       pictures::Messages& messages) {
    for (const headless::ParameterInfo& info : parameters.infos()) {
        if (info.type != PF_Param_POINT) continue;
        const headless::Geometry geometry{.width = width, .height = height};
        const PF_PointDef point = parameters.evaluate(info.index, time, geometry).u.td;
        constexpr double kFixedOne = 65536.0;
        const double x = point.x_value / kFixedOne;
        const double y = point.y_value / kFixedOne;
        if (x >= 0.0 && y >= 0.0 && x <= width && y <= height) continue;
        messages.note("--" + optionName(info) + " is at " + pictures::numberText(x) + "," +
                      pictures::numberText(y) + ", outside " + ofTheImage(width, height));
    }
}

}  // namespace cli
