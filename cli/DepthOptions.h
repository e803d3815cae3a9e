// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <optional>
#include <string>

#include "cli/FocusOptions.h"
#include "cli/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthMapping.h"
#include "pictures/depth/MapPlacement.h"

namespace cli {

// The name of the option for the effect's depth map, without hyphens.
inline constexpr const char* kDepthLayer = "depth-map-layer";

// The options that say what the values of a depth map mean, and where in them the focus lies.
class DepthOptions {
public:
    void addTo(CLI::App& app);
    // Whether any of them was given.
    bool any() const;
    // Throws UsageError for texts that aren't numbers, for options that exclude each other or one
    // of the `controls` given, and if there is no depth map among them. `parameters` has the
    // controls.
    void check(const headless::ParameterSet& parameters, const ParameterOptions& controls) const;
    // Reads the map that `controls` name, if any, and sets it as layer, and Placement and Focal
    // Distance where the map's size or the focus demands it; `parameters` has the controls already.
    // `image` describes the image to blur; if it is null, the map's place in it doesn't matter.
    // Prints the range that --depth-auto finds to `out`. Throws what readDepth throws, and
    // UsageError for a map of another shape without a placement, and for a focus that can't be.
    void apply(headless::ParameterSet& parameters, const ParameterOptions& controls,
               const pictures::Picture* image, pictures::Messages& messages,
               std::ostream& out) const;

private:
    pictures::DepthMapping mapping() const;

    std::string kind_;
    std::string near_;
    std::string far_;
    bool automatic_ = false;
    bool inverse_ = false;
    FocusOptions focus_;
};

}  // namespace cli
