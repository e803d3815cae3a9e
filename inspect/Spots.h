// SPDX-License-Identifier: Apache-2.0
#pragma once
// How the effect blurs a point of light at a known depth.

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "headless/Effect.h"
#include "headless/Parameters.h"

namespace inspect {

// The blurred point. Nearness is the effect's scale of depth: 0 far to 1 near, whether or not the
// effect inverts the map.
struct Spot {
    double nearness = 0;
    // Of a disc with the same second moment, in pixels; where pixels aren't square, in heights of
    // one.
    double radius = 0;
    int size = 0;              // of the square `light`, odd; the point was in its middle
    std::vector<float> light;  // row by row
};

// The settings of a frame whose blur is measured.
struct Bench {
    headless::Effect& effect;
    // Of the frame itself; measuring always takes float.
    headless::FrameRequest frame;
    headless::ParameterSet parameters;
    // The nearness under the two focus points; only if the frame uses them.
    std::optional<std::array<float, 2>> focusPoints{};
};

// Is told the share that is done, 0 to 1; may be empty.
using Told = std::function<void(double share)>;

// A point of light without a depth map: the aperture. Light is measured before the exposure curve:
// the bench's own exposure is left out. Throws std::runtime_error if the effect renders no frame
// and pictures::Interrupted if it was cancelled.
Spot measureAperture(const Bench& bench);

// A point at each depth, in frames with made maps. Throws as measureAperture.
std::vector<Spot> measureSpots(const Bench& bench, std::span<const float> nearness,
                               const Told& told = {});

// All of another picture with other controls in float, otherwise as the bench's frame. Throws as
// measureAperture.
headless::FrameResult renderBench(const Bench& bench, const headless::ParameterSet& parameters,
                                  std::shared_ptr<const headless::World> input);

}  // namespace inspect
