// SPDX-License-Identifier: Apache-2.0
#include "inspect/Spots.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "pictures/Errors.h"

namespace inspect {
namespace {

// Above what the effect adds to the control Blur Radius, in pixels.
constexpr double kMargin = 2.0;
// Of one frame of spots: larger ones would take more memory than the effect itself.
constexpr std::size_t kMostPixels = std::size_t{1} << 22;

headless::ParameterSet withoutExposure(headless::ParameterSet parameters) {
    parameters.set("Exposure", 0.0);
    parameters.set("Remove Edge Leak", 0.0);
    return parameters;
}

// A grid of square cells, each with a point of light in the middle of one depth. A depth layer's
// weights are blurred like its light, so that other cells are felt up to the reach of the blur
// inside a cell; the spot reaches as far.
class Cells {
public:
    Cells(int reach, std::vector<float> values)
        : reach_(reach),
          cell_(4 * reach + 1),
          columns_(static_cast<int>(std::ceil(std::sqrt(static_cast<double>(values.size()))))),
          values_(std::move(values)) {}

    int width() const { return columns_ * cell_; }
    int height() const {
        return (static_cast<int>(values_.size()) + columns_ - 1) / columns_ * cell_;
    }
    int middleX(int cell) const { return cell % columns_ * cell_ + 2 * reach_; }
    int middleY(int cell) const { return cell / columns_ * cell_ + 2 * reach_; }

    std::shared_ptr<headless::World> lights() const {
        auto world = std::make_shared<headless::World>(width(), height(), PF_PixelFormat_ARGB128);
        world->fill({.alpha = 1.0F, .red = 0.0F, .green = 0.0F, .blue = 0.0F});
        for (int i = 0; i < static_cast<int>(values_.size()); ++i) {
            world->set(middleX(i), middleY(i), {1.0F, 1.0F, 1.0F, 1.0F});
        }
        return world;
    }

    std::shared_ptr<headless::World> map() const {
        auto world = std::make_shared<headless::World>(width(), height(), PF_PixelFormat_ARGB128);
        for (int y = 0; y < height(); ++y) {
            auto* const row = world->row<PF_PixelFloat>(y);
            for (int x = 0; x < width(); ++x) {
                const int cell = y / cell_ * columns_ + x / cell_;
                const float value =
                    values_[std::min(static_cast<std::size_t>(cell), values_.size() - 1)];
                row[x] = {.alpha = 1.0F, .red = value, .green = value, .blue = value};
            }
        }
        return world;
    }

    Spot spot(const headless::World& result, int cell, double pixelAspect) const {
        Spot spot;
        spot.size = 2 * reach_ + 1;
        double sum = 0;
        double xs = 0;
        double ys = 0;
        double squares = 0;
        for (int dy = -reach_; dy <= reach_; ++dy) {
            const auto* const row = result.row<PF_PixelFloat>(middleY(cell) + dy);
            for (int dx = -reach_; dx <= reach_; ++dx) {
                const float value = row[middleX(cell) + dx].green;
                spot.light.push_back(value);
                const auto light = static_cast<double>(value);
                const double x = dx * pixelAspect;
                sum += light;
                xs += light * x;
                ys += light * dy;
                squares += light * (x * x + dy * dy);
            }
        }
        const double moment = sum > 0.0 ? (squares - (xs * xs + ys * ys) / sum) / sum : 0.0;
        spot.radius = std::sqrt(2.0 * std::max(moment, 0.0));
        return spot;
    }

private:
    int reach_;
    int cell_;
    int columns_;
    std::vector<float> values_;  // of the map
};

int reachOf(const Bench& bench) {
    const auto& parameters = bench.parameters;
    const double radius = parameters.value(parameters.find("Blur Radius"), bench.frame.time);
    return static_cast<int>(std::ceil(radius + kMargin));
}

std::vector<Spot> render(const Bench& bench, const headless::ParameterSet& parameters,
                         const Cells& cells, int count) {
    const headless::FrameResult result = renderBench(bench, parameters, cells.lights());
    const double aspect =
        static_cast<double>(bench.frame.pixelAspect.num) / bench.frame.pixelAspect.den;
    std::vector<Spot> spots;
    spots.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) spots.push_back(cells.spot(*result.output, i, aspect));
    return spots;
}

// Puts the focus points on the last two of the cells.
void aim(headless::ParameterSet& parameters, const Cells& cells, int first) {
    for (const char* const label : {"Focus Point 0", "Focus Point 1"}) {
        parameters.setPoint(parameters.find(label), cells.middleX(first) + 0.5,
                            cells.middleY(first) + 0.5);
        ++first;
    }
}

}  // namespace

headless::FrameResult renderBench(const Bench& bench, const headless::ParameterSet& parameters,
                                  std::shared_ptr<const headless::World> input) {
    headless::FrameRequest request = bench.frame;
    request.parameters = &parameters;
    request.input = std::move(input);
    request.rect.reset();
    request.progress = {};
    request.bits = 32;
    headless::FrameResult result = bench.effect.renderFrame(request);
    if (result.status == PF_Interrupt_CANCEL) throw pictures::Interrupted{};
    if (result.status != PF_Err_NONE || result.output == nullptr) {
        throw std::runtime_error("the effect failed with code " + std::to_string(result.status) +
                                 " while its blur was measured");
    }
    return result;
}

Spot measureAperture(const Bench& bench) {
    headless::ParameterSet parameters = withoutExposure(bench.parameters);
    parameters.setLayer(parameters.find("Layer"), nullptr);
    return render(bench, parameters, Cells(reachOf(bench), {0.0F}), 1).front();
}

std::vector<Spot> measureSpots(const Bench& bench, std::span<const float> nearness,
                               const Told& told) {
    headless::ParameterSet parameters = withoutExposure(bench.parameters);
    const A_Time time = bench.frame.time;
    const bool inverted = parameters.value(parameters.find("Invert Depth Map"), time) != 0.0;
    parameters.set("Placement", 1.0);
    parameters.set("Channel", 1.0);
    const int reach = reachOf(bench);
    const auto cellPixels = static_cast<std::size_t>(4 * reach + 1) * (4 * reach + 1);
    const std::size_t most = std::max<std::size_t>(kMostPixels / cellPixels, 1);

    std::vector<Spot> all;
    while (all.size() < nearness.size()) {
        const auto part =
            nearness.subspan(all.size(), std::min(most, nearness.size() - all.size()));
        std::vector<float> values(part.begin(), part.end());
        if (bench.focusPoints) {
            values.insert(values.end(), bench.focusPoints->begin(), bench.focusPoints->end());
        }
        if (inverted) {
            for (float& value : values) value = 1.0F - value;
        }
        const Cells cells(reach, values);
        const int count = static_cast<int>(part.size());
        if (bench.focusPoints) aim(parameters, cells, count);
        parameters.setLayer(parameters.find("Layer"), cells.map());
        for (Spot& spot : render(bench, parameters, cells, count)) {
            spot.nearness = static_cast<double>(nearness[all.size()]);
            all.push_back(std::move(spot));
        }
        if (told) told(static_cast<double>(all.size()) / static_cast<double>(nearness.size()));
    }
    return all;
}

}  // namespace inspect
