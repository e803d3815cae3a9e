// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/options/DepthOptions.h"
#include "headless/Parameters.h"
#include "occlusion/Render.h"
#include "pictures/Messages.h"

namespace cli {

// --occlusion: whether near things hide far ones, and where the depth is cut for it.
class OcclusionOptions {
public:
    void addTo(CLI::App& app);
    // Whether it is given, and not off.
    bool given() const { return option_->count() > 0 && text_ != "off"; }
    // Throws UsageError for anything but auto, a number of slabs or bounds, and for `parameters`
    // and `bits` that it can't do with. `hasMap` tells whether there is a depth map.
    void check(const headless::ParameterSet& parameters, int bits, bool hasMap) const;
    // Throws UsageError for bounds that aren't in order or not inside the map's range.
    occlusion::Options options(const MapScale& map) const;

private:
    bool automatic() const;
    bool namesBounds() const;
    int slabs() const;
    std::vector<double> bounds() const;
    std::vector<float> boundsIn(const MapScale& map) const;

    const CLI::Option* option_ = nullptr;  // belongs to the app
    std::string text_;
};

// Notes the slabs of a frame.
void tellSlabs(const std::vector<occlusion::SlabReport>& slabs, const MapScale& map,
               pictures::Messages& messages);

// Notes where the depth of all frames of a shot is cut.
void tellBounds(const std::vector<float>& bounds, const MapScale& map,
                pictures::Messages& messages);

// The tool's arguments with auto where --occlusion has no value: the parser would take any file
// after it for one.
std::vector<std::string> withSlabs(std::vector<std::string> arguments);

}  // namespace cli
