// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "cli/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthFocus.h"

namespace cli {

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
    // The value of the map to focus on, if an option says one: that of the pixel is as for apply().
    std::optional<double> value(const headless::ParameterSet& parameters,
                                const pictures::DepthSource& source,
                                const std::optional<pictures::Size>& image) const;
    // Sets Focal Distance, notes it, and warns if the focus is beyond the map's range. A pixel has
    // no effect without an image. The map is placed by the control Placement.
    void apply(headless::ParameterSet& parameters, const pictures::DepthSource& source,
               const pictures::DepthCurve& curve, const std::optional<pictures::Size>& image,
               pictures::Messages& messages) const;

private:
    std::string focus_;
    std::string focusAt_;
};

}  // namespace cli
