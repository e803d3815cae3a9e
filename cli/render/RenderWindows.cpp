// SPDX-License-Identifier: Apache-2.0
#include "cli/render/RenderWindows.h"

#include <cmath>

#include "cli/Errors.h"
#include "headless/World.h"
#include "platform/Rectangles.h"

namespace cli {
namespace {

using pictures::Window;

// More than the reach of any blur; the effect itself reports how far the result grows.
constexpr int kOverscanRoom = 32768;

Window moved(const Window& window, int x, int y) {
    return {window.left + x, window.top + y, window.right + x, window.bottom + y};
}

double factorOf(PF_RationalScale scale) {
    return static_cast<double>(scale.num) / scale.den;
}

int lowEdge(int edge, double factor) {
    return static_cast<int>(std::floor(edge * factor));
}

int highEdge(int edge, double factor) {
    return static_cast<int>(std::ceil(edge * factor));
}

// The layer's own corner is its origin.
Window displayInLayer(const pictures::Picture& picture) {
    return moved(picture.display, -picture.window.left, -picture.window.top);
}

Window layerOf(const pictures::Picture& picture) {
    return {0, 0, picture.width(), picture.height()};
}

// What is rendered at most without overscan, in pixels of the layer.
Window limitsOf(const RenderExtent& extent, const pictures::Picture& picture) {
    return extent.cropToDisplay ? displayInLayer(picture) : layerOf(picture);
}

// What the user asks for, in pixels of the layer.
Window wantedWindow(const RenderExtent& extent, const pictures::Picture& picture) {
    const Window display = displayInLayer(picture);
    const Window layer = layerOf(picture);
    const Window limits = limitsOf(extent, picture);
    if (extent.region) {
        const Window region = moved(*extent.region, display.left, display.top);
        return extent.keepOverscan ? region : intersection(region, limits);
    }
    if (!extent.keepOverscan) return limits;
    return {-kOverscanRoom, -kOverscanRoom, layer.right + kOverscanRoom,
            layer.bottom + kOverscanRoom};
}

}  // namespace

Window regionLimits(const RenderExtent& extent, const pictures::Picture& picture) {
    const Window display = displayInLayer(picture);
    return moved(limitsOf(extent, picture), -display.left, -display.top);
}

std::string limitsText(const Window& limits) {
    std::string size =
        std::to_string(limits.width()) + "x" + std::to_string(limits.height()) + " pixels";
    if (limits.left != 0 || limits.top != 0) {
        size += " from " + std::to_string(limits.left) + "," + std::to_string(limits.top);
    }
    return size;
}

PF_LRect wantedRect(const RenderExtent& extent, const pictures::Picture& picture) {
    const Window wanted = wantedWindow(extent, picture);
    if (wanted.empty()) {
        throw UsageError("--region is outside the image, which has " +
                         limitsText(regionLimits(extent, picture)));
    }
    const double factor = factorOf(extent.scale);
    return {lowEdge(wanted.left, factor), lowEdge(wanted.top, factor),
            highEdge(wanted.right, factor), highEdge(wanted.bottom, factor)};
}

Window neededWindow(const PF_LRect& request, const pictures::Picture& picture,
                    PF_RationalScale scale) {
    const double factor = 1.0 / factorOf(scale);
    const Window needed{lowEdge(request.left, factor), lowEdge(request.top, factor),
                        highEdge(request.right, factor), highEdge(request.bottom, factor)};
    return moved(intersection(needed, layerOf(picture)), picture.window.left, picture.window.top);
}

Window resultWindow(const PF_LRect& result, const pictures::Picture& picture,
                    PF_RationalScale scale) {
    const double factor = factorOf(scale);
    return moved({result.left, result.top, result.right, result.bottom},
                 lowEdge(picture.window.left, factor), lowEdge(picture.window.top, factor));
}

Window displayWindow(const pictures::Picture& picture, PF_RationalScale scale) {
    const double factor = factorOf(scale);
    return moved({0, 0, headless::reducedSize(picture.display.width(), scale),
                  headless::reducedSize(picture.display.height(), scale)},
                 lowEdge(picture.display.left, factor), lowEdge(picture.display.top, factor));
}

bool growsBeyondLayer(const PF_LRect& result, const pictures::Picture& picture,
                      PF_RationalScale scale) {
    return result.left < 0 || result.top < 0 ||
           result.right > headless::reducedSize(picture.width(), scale) ||
           result.bottom > headless::reducedSize(picture.height(), scale);
}

}  // namespace cli
