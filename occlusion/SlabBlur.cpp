// SPDX-License-Identifier: Apache-2.0
#include "occlusion/SlabBlur.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "occlusion/Rows.h"
#include "pictures/depth/LensLayers.h"
#include "platform/Rectangles.h"

namespace occlusion {
namespace {

using pictures::kAddedRadius;
using pictures::LensLayers;

constexpr int kMostLayers = 10;  // of the control Resolution
// Radii of a slab that differ by less, in pixels of the render or as part of the largest, are one.
constexpr double kSameRadius = 0.25;
constexpr double kSameShare = 0.05;
// Layers need not be closer, in pixels of the render.
constexpr double kLeastStep = 1.0;

int layersFor(const RadiusSpan& span, double downsample) {
    const double same = std::max(kSameRadius, kSameShare * span.largest * downsample);
    if ((span.largest - span.least) * downsample < same) return 1;
    const double steps = std::ceil(span.largest * downsample / kLeastStep);
    return std::clamp(static_cast<int>(steps) + 1, 2, kMostLayers);
}

int floorOf(double value) {
    return static_cast<int>(std::floor(value));
}

}  // namespace

SlabBlur::SlabBlur(const headless::ParameterSet& parameters, SlabScene slab, double downsample,
                   int threads)
    : parameters_(parameters),
      slab_(std::move(slab)),
      downsample_(downsample),
      layers_(layersFor(slab_.span, downsample)) {
    const double radius =
        layers_ == 1 ? (slab_.span.least + slab_.span.largest) / 2.0 : slab_.span.largest;
    const int blurRadius = parameters_.find("Blur Radius");
    const double control = LensLayers::fullRadiusFor(radius * downsample) / downsample;
    parameters_.set(blurRadius,
                    std::clamp(control - kAddedRadius, 0.0, parameters_.info(blurRadius).validMax));
    fullRadius_ = (parameters_.value(blurRadius) + kAddedRadius) * downsample;
    // The light is expanded already.
    parameters_.set("Exposure", 0.0);
    parameters_.set("Remove Edge Leak", 0.0);
    setMap(threads);
}

// The map holds 1 in focus and 0 where the blur is largest. It takes the place of the radii, whose
// memory is freed.
void SlabBlur::setMap(int threads) {
    const int layer = parameters_.find("Layer");
    if (layers_ == 1) {
        parameters_.setLayer(layer, nullptr);
        slab_.radii = std::vector<float>();
        return;
    }
    const LensLayers blurs(layers_, fullRadius_);
    const auto map = std::make_shared<headless::World>(slab_.light->width(), slab_.light->height(),
                                                       PF_PixelFormat_ARGB128);
    forRows(map->height(), threads, [&](int first, int last) {
        for (int y = first; y < last; ++y) {
            auto* const row = map->row<PF_PixelFloat>(y);
            const float* const radii =
                slab_.radii.data() + static_cast<std::ptrdiff_t>(y) * map->width();
            for (int x = 0; x < map->width(); ++x) {
                const double away =
                    blurs.distanceFromFocus(static_cast<double>(radii[x]) * downsample_);
                const auto value = static_cast<float>(1.0 - away);
                row[x] = {value, value, value, value};
            }
        }
    });
    slab_.radii = std::vector<float>();
    parameters_.setLayer(layer, map);
    parameters_.set("Placement", 1.0);
    parameters_.set("Resolution", static_cast<double>(layers_));
    parameters_.set("Focal Distance", 1.0);
    parameters_.set("Profile", 0.0);
    parameters_.set("Invert Depth Map", 0.0);
}

// Where light of the slab can get, in pixels of the render.
PF_LRect SlabBlur::reach() const {
    const double margin = fullRadius_ + 2.0;
    const PF_LRect& covered = slab_.extent;
    return {floorOf(covered.left * downsample_ - margin),
            floorOf(covered.top * downsample_ - margin),
            floorOf(covered.right * downsample_ + margin) + 1,
            floorOf(covered.bottom * downsample_ + margin) + 1};
}

headless::FrameRequest SlabBlur::request(const headless::FrameRequest& frame,
                                         const PF_LRect& rect) const {
    headless::FrameRequest request = frame;
    request.input = slab_.light;
    request.parameters = &parameters_;
    request.rect = intersection(rect, reach());
    request.bits = 32;
    return request;
}

void SlabBlur::fill() {
    for (int y = 0; y < slab_.light->height(); ++y) {
        auto* const row = slab_.light->row<PF_PixelFloat>(y);
        std::fill_n(row, slab_.light->width(),
                    PF_PixelFloat{.alpha = 1.0F, .red = 0.0F, .green = 0.0F, .blue = 0.0F});
    }
}

}  // namespace occlusion
