// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string>

#include "cli/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthMapReader.h"

namespace cli {

// The name of the option for the effect's depth map, without hyphens.
inline constexpr const char* kDepthLayer = "depth-map-layer";

// The options that say how to read the values of a depth map.
class DepthOptions {
public:
    void addTo(CLI::App& app);
    // Whether any of them was given.
    bool any() const;
    // Throws UsageError for options that exclude each other, for distances that form no range, and
    // if options are given without a depth map among `controls`.
    void check(const ParameterOptions& controls) const;
    // Reads the map that `setting` names and sets it as layer. Prints the range that --depth-auto
    // finds to `out`. Throws what readDepthMap throws.
    void apply(headless::ParameterSet& parameters, const Setting& setting,
               pictures::Messages& messages, std::ostream& out) const;

private:
    pictures::DepthMapping mapping() const;

    std::string near_;
    std::string far_;
    bool automatic_ = false;
    bool inverse_ = false;
};

}  // namespace cli
