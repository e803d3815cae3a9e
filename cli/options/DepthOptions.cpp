// SPDX-License-Identifier: Apache-2.0
#include "cli/options/DepthOptions.h"

#include <ostream>

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"
#include "pictures/depth/DepthMapReader.h"

namespace cli {
namespace {

using pictures::DepthKind;
using pictures::numberText;

DepthKind parseKind(const std::string& text) {
    constexpr Choice<DepthKind> kKinds[] = {{"distance", DepthKind::kDistance},
                                            {"disparity", DepthKind::kDisparity},
                                            {"normalised", DepthKind::kNormalised}};
    return parseChoice("--depth-kind", text, kKinds);
}

std::string named(const LayerNames& names, const std::string& text) {
    return names ? names(text) : text;
}

pictures::MapControls mapControls(const headless::ParameterSet& parameters,
                                  const ParameterOptions& controls, A_Time time) {
    return {.channel = static_cast<pictures::MapChannel>(choiceAt(parameters, "Channel", time)),
            .channelGiven = controls.given("depth-map-channel"),
            .inverted = choiceAt(parameters, "Invert Depth Map", time) != 0};
}

// Whether a map of another size has to be stretched. Throws UsageError if only the user can say.
bool mustStretch(const ParameterOptions& controls, const pictures::DepthSource& source,
                 const pictures::Size& image) {
    const pictures::Size map = displaySize(source.picture);
    if (map == image || controls.given("placement")) return false;
    if (pictures::sameShape(image, map)) return true;
    throw UsageError(source.picture.name + " has " + pictures::sizeText(map) +
                     " pixels and another shape than the image, " + pictures::sizeText(image) +
                     "; add --placement stretch-map or --placement center-map");
}

void stretch(headless::ParameterSet& parameters, const pictures::DepthSource& source,
             const pictures::Size& image, pictures::Messages& messages) {
    parameters.set("Placement", static_cast<double>(pictures::MapPlacement::kStretch));
    messages.note(source.picture.name + ", " + pictures::sizeText(displaySize(source.picture)) +
                  ", is stretched over the image, " + pictures::sizeText(image));
}

pictures::MapPlacement placementOf(const headless::ParameterSet& parameters, A_Time time) {
    return static_cast<pictures::MapPlacement>(choiceAt(parameters, "Placement", time));
}

std::shared_ptr<headless::World> layerOf(const pictures::Picture& map, const MapUse& use,
                                         pictures::MapPlacement placement) {
    const bool fits =
        use.image == nullptr || (!use.forEachPixel && fitsEffect(*use.image, map, placement));
    if (fits) return pictures::makeWorld(map, pictures::worldBits(map.type));
    return pictures::layOver(*use.image, map, placement,
                             use.forEachPixel ? pictures::Steps::kKept : pictures::Steps::kSmooth);
}

// Distances are 1 where they are near, also if the effect inverts the map: that changes no blur,
// but which end hides the other. The same blur without inversion.
void leaveOutInversion(headless::ParameterSet& parameters) {
    parameters.set("Invert Depth Map", 0.0);
    parameters.changeValues(parameters.find("Focal Distance"),
                            [](double distance) { return 1.0 - distance; });
}

// The range by which --depth-auto maps.
void printRange(std::ostream& out, DepthKind kind, const pictures::DepthRange& range) {
    const bool nearIsMost = kind == DepthKind::kDisparity;
    out << "depth: " << numberText(nearIsMost ? range.most : range.least) << " (near) to "
        << numberText(nearIsMost ? range.least : range.most) << " (far)"
        << std::endl;  // a reader may wait for it while the render runs
}

}  // namespace

double MapScale::nearness(double value) const {
    const double position = curve(value);
    return inverted ? 1.0 - position : position;
}

double MapScale::value(double nearness) const {
    double low = range.least;
    double high = range.most;
    const bool rising = this->nearness(low) < this->nearness(high);
    constexpr double kBeyond = 1024.0;
    (rising ? low /= kBeyond : high *= kBeyond);
    for (int halvings = 0; halvings < 60; ++halvings) {
        const double middle = (low + high) / 2.0;
        const bool below = this->nearness(middle) < nearness;
        (below == rising ? low : high) = middle;
    }
    return low;
}

void DepthOptions::addTo(CLI::App& app) {
    const std::string group = "Depth map values";
    app.add_option("--depth-kind", kind_,
                   "what the map holds: distance, disparity or normalised (0 to 1); default: "
                   "distance for a float map with values above 1, otherwise normalised")
        ->type_name("distance|disparity|normalised")
        ->group(group);
    app.add_option("--depth-near", near_, "distance or disparity that is mapped to 1, near")
        ->type_name("D")
        ->group(group);
    app.add_option("--depth-far", far_,
                   "the one that is mapped to 0, far; may be inf with --depth-inverse")
        ->type_name("D")
        ->group(group);
    app.add_flag("--depth-auto", automatic_, "take near and far from the map's range, and print it")
        ->group(group);
    app.add_flag("--depth-inverse", inverse_,
                 "map 1/distance linearly instead of distance; the default for a distance map "
                 "without near, far and --depth-auto")
        ->group(group);
    focus_.addTo(app, group);
}

bool DepthOptions::any() const {
    return !kind_.empty() || maps() || focuses();
}

pictures::DepthMapping DepthOptions::mapping() const {
    pictures::DepthMapping mapping;
    if (!kind_.empty()) mapping.kind = parseKind(kind_);
    if (!near_.empty()) mapping.near = parseDistance("--depth-near", near_);
    if (!far_.empty()) mapping.far = parseDistance("--depth-far", far_);
    mapping.automatic = automatic_;
    mapping.inverse = inverse_;
    return mapping;
}

void DepthOptions::check(const headless::ParameterSet& parameters,
                         const ParameterOptions& controls) const {
    requireConsistent(mapping(), mapping().kind.value_or(DepthKind::kDistance));
    focus_.check(parameters, controls);
    if (any() && !controls.given(kDepthLayer)) {
        throw UsageError("the options for depth need a depth map; add --depth-map-layer FILE");
    }
}

DepthFindings DepthOptions::findings(const headless::ParameterSet& parameters,
                                     const ParameterOptions& controls, const std::string& file,
                                     A_Time time, std::optional<DepthKind> found,
                                     pictures::Messages& messages) const {
    pictures::DepthMapping mapping = this->mapping();
    mapping.ofShot = true;
    mapping.found = found;
    const pictures::DepthSource source =
        pictures::readDepth(file, pictures::Extent::kDisplay, mapping,
                            mapControls(parameters, controls, time), messages);
    return {.kind = source.kind, .range = source.range};
}

void DepthOptions::tell(const std::string& name, const DepthFindings& findings,
                        pictures::Messages& messages, std::ostream& out) const {
    pictures::tellRange(name, findings.kind, findings.range, mapping(), messages);
    if (automatic_ && !messages.quiet()) printRange(out, findings.kind, findings.range);
}

pictures::DepthCurve DepthOptions::lensCurve(headless::ParameterSet& parameters, Camera camera,
                                             const pictures::DepthSource& source,
                                             const std::optional<double>& focusAt,
                                             pictures::Messages& messages) const {
    if (const auto focus = focusAt ? focusAt : focus_.valueGiven()) {
        camera.view.lens.focus = *focus * camera.view.mapUnit;
    }
    pictures::DepthMapping mapping;
    mapping.curve = applyCamera(parameters, camera, source, messages);
    return {source.kind, mapping, source.range, source.controls.inverted};
}

pictures::DepthCurve DepthOptions::plainCurve(headless::ParameterSet& parameters,
                                              const pictures::DepthSource& source,
                                              const std::optional<double>& focusAt,
                                              pictures::Messages& messages) const {
    pictures::DepthCurve curve(source.kind, mapping(), source.range, source.controls.inverted);
    focus_.apply(parameters, source, curve, focusAt, messages);
    return curve;
}

std::optional<MapScale> DepthOptions::apply(headless::ParameterSet& parameters,
                                            const ParameterOptions& controls, const MapUse& use,
                                            pictures::Messages& messages, std::ostream& out) const {
    const pictures::Picture* const image = use.image;
    const std::optional<Setting> map = controls.setting(kDepthLayer);
    if (!map) return std::nullopt;
    pictures::DepthMapping mapping = this->mapping();
    if (use.findings) {
        mapping.ofShot = true;
        mapping.found = use.findings->kind;
    }
    const bool overscan = image != nullptr && image->window != image->display;
    pictures::DepthSource source =
        pictures::readDepth(named(use.names, map->text),
                            overscan ? pictures::Extent::kEverything : pictures::Extent::kDisplay,
                            mapping, mapControls(parameters, controls, use.time), messages);
    std::optional<pictures::Size> size;
    if (image != nullptr) size = displaySize(*image);
    const bool stretched = size && mustStretch(controls, source, *size);
    focus_.requirePossible(source.kind, size);

    if (use.findings) {
        source.range = use.findings->range;
    } else {
        pictures::tellDepth(source, mapping, messages);
        if (automatic_ && !messages.quiet()) printRange(out, source.kind, source.range);
    }
    if (stretched) stretch(parameters, source, *size, messages);
    const std::optional<double> focus =
        use.findings && use.findings->focus
            ? use.findings->focus
            : focus_.valueAt(placementOf(parameters, use.time), source, size);
    const pictures::DepthCurve curve =
        use.camera ? lensCurve(parameters, *use.camera, source, focus, messages)
                   : plainCurve(parameters, source, focus, messages);
    const bool turns = use.forEachPixel && source.kind != DepthKind::kNormalised;
    if (turns && source.controls.inverted) leaveOutInversion(parameters);
    MapScale scale{curve, source.range, source.controls.inverted && !turns, focus, std::nullopt};
    if (!use.at.empty() && size) {
        scale.at = depthAt("--at", use.at, placementOf(parameters, use.time), source, curve, *size);
    }
    const pictures::Picture positions = applyCurve(std::move(source), curve);
    parameters.setLayer(map->info.index,
                        layerOf(positions, use, placementOf(parameters, use.time)));
    return scale;
}

}  // namespace cli
