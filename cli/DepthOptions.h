// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "cli/CameraSettings.h"
#include "cli/FocusOptions.h"
#include "cli/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthMapping.h"
#include "pictures/depth/MapPlacement.h"

namespace cli {

// The name of the option for the effect's depth map, without hyphens.
inline constexpr const char* kDepthLayer = "depth-map-layer";

// What a map is read for.
struct MapUse {
    // Describes the image to blur; if it is null, the map's place in it doesn't matter.
    const pictures::Picture* image = nullptr;
    std::optional<Camera> camera{};  // the lens in front of it
    // The map is to have a value for each pixel of the image, and its near end to be the effect's.
    bool forEachPixel = false;
};

// How the values of a map were put on the effect's scale.
struct MapScale {
    pictures::DepthCurve curve;
    pictures::DepthRange range;
    bool inverted = false;  // the effect takes 0 as near

    // 0 far to 1 near.
    double nearness(double value) const;
    // The value with a nearness; beyond the range for one between its farthest value and pixels
    // without depth.
    double value(double nearness) const;
};

// The options that say what the values of a depth map mean, and where in them the focus lies.
class DepthOptions {
public:
    void addTo(CLI::App& app);
    // Whether any of them was given.
    bool any() const;
    // Whether one says where near and far are, and whether one says where the focus is.
    bool maps() const { return !near_.empty() || !far_.empty() || automatic_ || inverse_; }
    bool focuses() const { return focus_.any(); }
    // Throws UsageError for texts that aren't numbers, for options that exclude each other or one
    // of the `controls` given, and if there is no depth map among them. `parameters` has the
    // controls.
    void check(const headless::ParameterSet& parameters, const ParameterOptions& controls) const;
    // Reads the map that `controls` name, if any, and sets it as layer, and Placement and Focal
    // Distance where the map's size or the focus demands it; `parameters` has the controls already.
    // Returns how the map's values were put on the effect's scale.
    // Prints the range that --depth-auto finds to `out`. Throws what readDepth throws, and
    // UsageError for a map of another shape without a placement, and for a focus that can't be. A
    // camera takes the place of near, far and the focus: it sets the controls of its lens.
    std::optional<MapScale> apply(headless::ParameterSet& parameters,
                                  const ParameterOptions& controls, const MapUse& use,
                                  pictures::Messages& messages, std::ostream& out) const;

private:
    pictures::DepthMapping mapping() const;
    pictures::DepthCurve lensCurve(headless::ParameterSet& parameters, Camera camera,
                                   const pictures::DepthSource& source,
                                   const std::optional<pictures::Size>& image,
                                   pictures::Messages& messages) const;
    pictures::DepthCurve plainCurve(headless::ParameterSet& parameters,
                                    const pictures::DepthSource& source,
                                    const std::optional<pictures::Size>& image,
                                    pictures::Messages& messages) const;

    std::string kind_;
    std::string near_;
    std::string far_;
    bool automatic_ = false;
    bool inverse_ = false;
    FocusOptions focus_;
};

}  // namespace cli
