// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "cli/options/DepthOptions.h"
#include "cli/options/ParameterOptions.h"
#include "pictures/Messages.h"

namespace cli {

// All options that set controls of the effect: one for each control, and those that say how to read
// the values of a depth map.
class EffectOptions {
public:
    explicit EffectOptions(std::vector<headless::ParameterInfo> controls);

    void addTo(CLI::App& app);
    // Whether any of them was given.
    bool any() const;
    // Whether the option of a control was given, such as "exposure".
    bool gives(const std::string& option) const;
    // Whether an option says where near and far of the depth map are, or where its focus is.
    bool mapsDepth() const { return depth_.maps(); }
    bool givesFocus() const { return depth_.focuses(); }
    // The files that the options name, for comparing with the output.
    std::vector<std::string> files() const;
    // Sets the controls that have numbers. Throws UsageError for a value that a control can't have,
    // and for options that contradict each other.
    void applyControls(headless::ParameterSet& parameters) const;
    // The option's text for the depth map, if there is one.
    std::optional<std::string> depthFile() const;
    // As DepthOptions::findings.
    DepthFindings depthFindings(const headless::ParameterSet& parameters, const std::string& file,
                                A_Time time, std::optional<pictures::DepthKind> found,
                                pictures::Messages& messages) const;
    // As DepthOptions::tell, for the depth map.
    void tellDepth(const DepthFindings& findings, pictures::Messages& messages,
                   std::ostream& out) const;
    // Reads the layers, after applyControls, and returns what DepthOptions::apply returns. Prints
    // the range that --depth-auto finds to `out`. Throws what the readers throw and what
    // DepthOptions::apply throws.
    std::optional<MapScale> applyLayers(headless::ParameterSet& parameters, const MapUse& use,
                                        pictures::Messages& messages, std::ostream& out) const;

private:
    void applyLayer(headless::ParameterSet& parameters, const Setting& setting,
                    const std::string& file, A_Time time, pictures::Messages& messages) const;

    ParameterOptions controls_;
    DepthOptions depth_;
};

}  // namespace cli
