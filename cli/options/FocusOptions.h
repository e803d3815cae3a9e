// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "cli/options/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthFocus.h"
#include "pictures/depth/MapPlacement.h"

namespace cli {

// What a map shows at the pixel of an image that an option names as X,Y or X%,Y%: the median around
// it. Throws UsageError if the image has no such pixel.
pictures::DepthSample depthAt(const std::string& option, const std::string& text,
                              pictures::MapPlacement placement, const pictures::DepthSource& source,
                              const pictures::DepthCurve& curve, const pictures::Size& image);

// The options that set the effect's Focal Distance from a place in the scene.
class FocusOptions {
public:
    void addTo(CLI::App& app, const std::string& group);
    bool any() const { return !focus_.empty() || !focusAt_.empty(); }
    // Throws UsageError for texts that aren't numbers, and for options that exclude each other or
    // one of the `controls` given. `parameters` has the controls.
    void check(const headless::ParameterSet& parameters, const ParameterOptions& controls) const;
    // Throws UsageError if maps of this kind have no such value, or if the image has no such pixel.
    void requirePossible(pictures::DepthKind kind,
                         const std::optional<pictures::Size>& image) const;
    // The value of the map to focus on, if an option gives it.
    std::optional<double> valueGiven() const;
    // What the map shows at the pixel that is to be in focus, if an option names one and there is
    // an image.
    std::optional<double> valueAt(pictures::MapPlacement placement,
                                  const pictures::DepthSource& source,
                                  const std::optional<pictures::Size>& image) const;
    // Sets Focal Distance to the value given or to `found` at a pixel, notes it, and warns if the
    // focus is beyond the map's range.
    void apply(headless::ParameterSet& parameters, const pictures::DepthSource& source,
               const pictures::DepthCurve& curve, const std::optional<double>& found,
               pictures::Messages& messages) const;

private:
    std::string focus_;
    std::string focusAt_;
};

}  // namespace cli
