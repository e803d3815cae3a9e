// SPDX-License-Identifier: Apache-2.0
#include "inspect/Layers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace inspect {
namespace {

// Where the layers lie doesn't depend on the radius, and small cells are measured soon.
constexpr double kRadius = 12.0;
constexpr int kSteps = 256;
// By how much a bend has to exceed what is around it, and the largest bend of all.
constexpr double kProminence = 1.5;
constexpr double kLeastShare = 1e-3;

// The change of slope at each depth but the first and the last.
std::vector<double> bendsOf(const std::vector<Spot>& spots) {
    std::vector<double> bends(spots.size(), 0.0);
    const auto moment = [&](std::size_t i) { return spots[i].radius * spots[i].radius; };
    for (std::size_t i = 1; i + 1 < spots.size(); ++i) {
        bends[i] = std::fabs(moment(i + 1) - 2.0 * moment(i) + moment(i - 1));
    }
    return bends;
}

}  // namespace

// A bend between two depths shows at both, in inverse proportion to how far it is from them.
std::vector<double> measureLayers(const Bench& bench, const Told& told) {
    Bench small = bench;
    small.parameters.set("Blur Radius", kRadius);
    std::vector<float> depths;
    for (int i = 0; i <= kSteps; ++i) depths.push_back(static_cast<float>(i) / kSteps);
    const std::vector<double> bends = bendsOf(measureSpots(small, depths, told));
    const auto pair = [&](int i) {
        const auto at = [&](int place) {
            return place < 0 || place > kSteps ? 0.0 : bends[static_cast<std::size_t>(place)];
        };
        return at(i) + at(i + 1);
    };
    double most = 0.0;
    for (int i = 0; i < kSteps; ++i) most = std::max(most, pair(i));

    std::vector<double> layers;
    for (int i = 0; i < kSteps; ++i) {
        const double here = pair(i);
        const double around = (pair(i - 3) + pair(i + 3)) / 2.0;
        const bool summit = here >= pair(i - 1) && here > pair(i + 1);
        if (!summit || here < kProminence * around || here < kLeastShare * most) continue;
        const double second = bends[static_cast<std::size_t>(i) + 1] - around / 2.0;
        layers.push_back((i + std::clamp(second / (here - around), 0.0, 1.0)) / kSteps);
    }
    return layers;
}

std::vector<float> measureEdges(const Bench& bench) {
    headless::ParameterSet parameters = bench.parameters;
    if (parameters.value(parameters.find("Remove Edge Leak"), bench.frame.time) <= 0.0) return {};
    const int width = bench.frame.input->width();
    const int height = bench.frame.input->height();
    const auto grey = std::make_shared<headless::World>(width, height, PF_PixelFormat_ARGB128);
    constexpr float kGrey = 0.5F;
    grey->fill({.alpha = 1.0F, .red = kGrey, .green = kGrey, .blue = kGrey});
    // The least blur that isn't a copy.
    parameters.set("Blur Radius", 0.01);
    parameters.set("Exposure", 10.0);
    parameters.set("Threshold", 0.0);
    parameters.set("Resolution", 2.0);
    parameters.set("Edge Behavior", 1.0);

    const headless::FrameResult result = renderBench(bench, parameters, grey);
    std::vector<float> edges;
    for (int y = 0; y < height; ++y) {
        const auto* const row = result.output->row<PF_PixelFloat>(y);
        for (int x = 0; x < width; ++x) {
            const float lost = 1.0F - row[x].green / kGrey;
            edges.push_back(std::clamp(lost, 0.0F, 1.0F));
        }
    }
    return edges;
}

}  // namespace inspect
