// SPDX-License-Identifier: Apache-2.0
#include "cli/OverscanLayer.h"

#include <cstring>

#include "cli/DepthOptions.h"
#include "cli/ParameterOptions.h"
#include "pictures/depth/MapPlacement.h"

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

// The map on every pixel of the layer, as it lies in the display window.
std::shared_ptr<headless::World> extended(const headless::World& map,
                                          pictures::MapPlacement placement,
                                          const pictures::Picture& image) {
    auto layer = std::make_shared<headless::World>(image.width(), image.height(), map.format());
    const pictures::Size display{image.display.width(), image.display.height()};
    const pictures::Size size{map.width(), map.height()};
    const auto bytes = static_cast<std::size_t>(headless::bytesPerPixel(map.format()));
    for (int y = 0; y < layer->height(); ++y) {
        std::byte* to = layer->bytesOfRow(y);
        for (int x = 0; x < layer->width(); ++x, to += bytes) {
            const std::size_t from = pictures::mapPixel(display, size, placement,
                                                        x + image.window.left - image.display.left,
                                                        y + image.window.top - image.display.top);
            const auto width = static_cast<std::size_t>(map.width());
            std::memcpy(to, map.bytesOfRow(static_cast<int>(from / width)) + from % width * bytes,
                        bytes);
        }
    }
    return layer;
}

}  // namespace

void moveToLayer(headless::ParameterSet& parameters, const pictures::Picture& image) {
    if (image.window == image.display) return;
    const auto placement = static_cast<pictures::MapPlacement>(
        static_cast<int>(parameters.value(parameters.find("Placement"))));
    for (const headless::ParameterInfo& info : parameters.infos()) {
        if (info.type == PF_Param_POINT) movePoint(parameters, info.index, image);
        if (info.type != PF_Param_LAYER || optionName(info) != kDepthLayer) continue;
        const auto map = parameters.layer(info.index);
        if (map) parameters.setLayer(info.index, extended(*map, placement, image));
    }
}

}  // namespace cli
