// SPDX-License-Identifier: Apache-2.0
#include "cli/DepthOptions.h"

#include <cmath>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"

namespace cli {
namespace {

// Throws UsageError for options that exclude each other or distances that form no range.
void requireConsistent(const pictures::DepthMapping& mapping) {
    const bool one = mapping.near.has_value() || mapping.far.has_value();
    const bool both = mapping.near.has_value() && mapping.far.has_value();
    if (mapping.automatic && one) {
        throw UsageError(
            "--depth-auto finds near and far itself; leave out --depth-near and --depth-far");
    }
    if (one && !both) throw UsageError("--depth-near and --depth-far belong together; give both");
    if (mapping.inverse && !mapping.maps()) {
        throw UsageError("--depth-inverse needs --depth-auto, or --depth-near and --depth-far");
    }
    if (!both) return;
    if (*mapping.near >= *mapping.far) {
        throw UsageError("--depth-near must be less than --depth-far");
    }
    if (mapping.inverse && *mapping.near <= 0.0) {
        throw UsageError("--depth-near must be above 0 with --depth-inverse");
    }
    if (!mapping.inverse && !std::isfinite(*mapping.far)) {
        throw UsageError("--depth-far can be infinite only with --depth-inverse");
    }
}

}  // namespace

void DepthOptions::addTo(CLI::App& app) {
    const std::string group = "Depth map distances";
    app.add_option("--depth-near", near_, "distance that is mapped to 1, near")
        ->type_name("D")
        ->group(group);
    app.add_option("--depth-far", far_,
                   "distance that is mapped to 0, far; may be inf with --depth-inverse")
        ->type_name("D")
        ->group(group);
    app.add_flag("--depth-auto", automatic_, "take near and far from the map's range, and print it")
        ->group(group);
    app.add_flag("--depth-inverse", inverse_, "map 1/distance linearly instead of distance")
        ->group(group);
}

bool DepthOptions::any() const {
    return !near_.empty() || !far_.empty() || automatic_ || inverse_;
}

pictures::DepthMapping DepthOptions::mapping() const {
    pictures::DepthMapping mapping;
    if (!near_.empty()) mapping.near = parseDistance("--depth-near", near_);
    if (!far_.empty()) mapping.far = parseDistance("--depth-far", far_);
    mapping.automatic = automatic_;
    mapping.inverse = inverse_;
    return mapping;
}

void DepthOptions::check(const ParameterOptions& controls) const {
    requireConsistent(mapping());
    if (any() && !controls.given(kDepthLayer)) {
        throw UsageError("the options for distances need a depth map; add --depth-map-layer FILE");
    }
}

void DepthOptions::apply(headless::ParameterSet& parameters, const Setting& setting,
                         pictures::Messages& messages, std::ostream& out) const {
    const pictures::DepthMap map = pictures::readDepthMap(setting.text, mapping(), messages);
    if (automatic_ && !messages.quiet()) {
        out << "depth: " << pictures::numberText(map.range.least) << " (near) to "
            << pictures::numberText(map.range.most) << " (far)"
            << std::endl;  // a reader may wait for it while the render runs
    }
    parameters.setLayer(setting.info.index, map.world);
}

}  // namespace cli
