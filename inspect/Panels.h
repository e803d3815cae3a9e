// SPDX-License-Identifier: Apache-2.0
#pragma once
// Pictures of what the effect does in a frame.

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "inspect/Canvas.h"
#include "inspect/Radii.h"
#include "inspect/Spots.h"

namespace inspect {

// The picture that is blurred, and its depth.
struct View {
    int width = 0;
    int height = 0;
    double pixelAspect = 1.0;
    std::vector<Colour> colours{};  // row by row, as displayed
    std::vector<float> nearness{};  // 0 far to 1 near
    // How much the effect takes for an outline in depth, 0 to 1; empty where it looks for none.
    std::vector<float> edges{};
};

// Names a nearness in the unit of the depth map.
using DepthName = std::function<std::string(double nearness)>;

struct DepthFacts {
    const Radii& radii;
    DepthName name;
    std::vector<double> layers{};  // the nearness at which a single layer of depth blurs
};

constexpr int kPanelGap = 28;  // pixels between the panels of a sheet

// All are `width` pixels wide, with a title. Aperture and spots are each drawn as bright as their
// brightest pixel.
Canvas aperturePanel(const Spot& aperture, int width);
Canvas spotsPanel(std::span<const Spot> spots, const DepthName& name, int width);
Canvas radiusPanel(const View& view, const DepthFacts& facts, int width);
Canvas depthPanel(const View& view, const DepthFacts& facts, int width);
Canvas histogramPanel(const View& view, const DepthFacts& facts, int width);

// Rows of panels, each from left to right.
Canvas sheet(std::span<const std::vector<Canvas>> rows);

}  // namespace inspect
