// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "cli/options/CameraSettings.h"
#include "cli/options/FocusOptions.h"
#include "cli/options/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/depth/DepthMapping.h"
#include "pictures/depth/MapPlacement.h"

namespace cli {

// The name of the option for the effect's depth map, without hyphens.
inline constexpr const char* kDepthLayer = "depth-map-layer";

// What was found in the maps of a shot. It holds for each of its frames: else a picture would
// flicker that finds something else than the one before.
struct DepthFindings {
    pictures::DepthKind kind = pictures::DepthKind::kNormalised;
    pictures::DepthRange range{};                // of all maps
    std::optional<double> focus{};               // the value to focus on, where a pixel shows it
    std::optional<std::vector<float>> bounds{};  // of slabs, in nearness
};

// The file that an option means in a frame, by the option's text.
using LayerNames = std::function<std::string(const std::string& text)>;

// What a map is read for.
struct MapUse {
    // Describes the image to blur; if it is null, the map's place in it doesn't matter.
    const pictures::Picture* image = nullptr;
    std::optional<Camera> camera{};  // the lens in front of it
    // The map is to have a value for each pixel of the image, and its near end to be the effect's.
    bool forEachPixel = false;
    LayerNames names{};                       // empty: the option names the file
    const DepthFindings* findings = nullptr;  // null: found in this map alone
    A_Time time{0, 1};                        // of the frame
    std::string at{};                         // a pixel to look at, X,Y or X%,Y%
};

// How the values of a map were put on the effect's scale.
struct MapScale {
    pictures::DepthCurve curve;
    pictures::DepthRange range;
    bool inverted = false;                      // the effect takes 0 as near
    std::optional<double> focus{};              // the value that --focus-at found
    std::optional<pictures::DepthSample> at{};  // at the pixel to look at

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
    // What the map in `file` alone says, which is one of a shot; `found` is the kind of others, if
    // they are of another than this one. Throws what readDepth throws.
    DepthFindings findings(const headless::ParameterSet& parameters,
                           const ParameterOptions& controls, const std::string& file, A_Time time,
                           std::optional<pictures::DepthKind> found,
                           pictures::Messages& messages) const;
    // Prints what --depth-auto found to `out`, and what the maps called `name` hold as a note.
    void tell(const std::string& name, const DepthFindings& findings, pictures::Messages& messages,
              std::ostream& out) const;
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
                                   const std::optional<double>& focusAt,
                                   pictures::Messages& messages) const;
    pictures::DepthCurve plainCurve(headless::ParameterSet& parameters,
                                    const pictures::DepthSource& source,
                                    const std::optional<double>& focusAt,
                                    pictures::Messages& messages) const;

    std::string kind_;
    std::string near_;
    std::string far_;
    bool automatic_ = false;
    bool inverse_ = false;
    FocusOptions focus_;
};

}  // namespace cli
