// SPDX-License-Identifier: Apache-2.0
#include "cli/EffectOptions.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/PictureReader.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"

namespace cli {
namespace {

constexpr const char* kDepthLayer = "depth-map-layer";
constexpr const char* kShapeLayer = "custom-blur-shape";
constexpr const char* kShapeChannel = "Custom Layer Channel";

// What one pixel contributes to the shape. `channel` is red, green, blue, alpha (1 to 4) or the
// mean of the colours; colour without alpha doesn't count.
float shapeValue(const float* rgba, int channel) {
    if (channel == 4) return rgba[3];
    if (rgba[3] <= 0.0F) return 0.0F;
    if (channel >= 1 && channel <= 3) return rgba[channel - 1];
    return (rgba[0] + rgba[1] + rgba[2]) / 3.0F;
}

// A shape that is black throughout lets no light through, so there would be no image.
void requireShape(const headless::World& shape, int channel, const std::string& file) {
    const std::vector<float> pixels = pictures::straightPixels(shape);
    for (std::size_t i = 0; i < pixels.size(); i += pictures::kChannels) {
        if (shapeValue(pixels.data() + i, channel) > 0.0F) return;
    }
    throw Failure("the blur shape " + file +
                  " has no pixels above 0 in its channel; use another image or "
                  "--custom-layer-channel");
}

std::shared_ptr<headless::World> readLayer(const std::string& file, pictures::Messages& messages) {
    pictures::Picture picture = pictures::readPicture(file);
    const pictures::Repairs repairs = pictures::repair(picture);
    if (repairs.notFinite > 0) {
        messages.warn(file + ": replaced " +
                      pictures::counted(repairs.notFinite, "non-finite value") +
                      ", NaN by 0 and infinity by 65504");
    }
    return pictures::makeWorld(picture, pictures::worldBits(picture.type));
}

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

EffectOptions::EffectOptions(std::vector<headless::ParameterInfo> controls)
    : controls_(std::move(controls)) {}

void EffectOptions::addTo(CLI::App& app) {
    controls_.addTo(app);
    if (controls_.empty()) return;
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

bool EffectOptions::any() const {
    return !controls_.settings().empty() || !near_.empty() || !far_.empty() || automatic_ ||
           inverse_;
}

bool EffectOptions::gives(const std::string& option) const {
    const std::vector<Setting> settings = controls_.settings();
    return std::any_of(settings.begin(), settings.end(),
                       [&](const Setting& setting) { return optionName(setting.info) == option; });
}

std::vector<std::string> EffectOptions::files() const {
    std::vector<std::string> names;
    for (const Setting& setting : controls_.settings()) {
        if (setting.info.type == PF_Param_LAYER) names.push_back(setting.text);
    }
    return names;
}

pictures::DepthMapping EffectOptions::mapping() const {
    pictures::DepthMapping mapping;
    if (!near_.empty()) mapping.near = parseDistance("--depth-near", near_);
    if (!far_.empty()) mapping.far = parseDistance("--depth-far", far_);
    mapping.automatic = automatic_;
    mapping.inverse = inverse_;
    requireConsistent(mapping);
    if ((mapping.maps() || inverse_) && !controls_.layer(kDepthLayer)) {
        throw UsageError("the options for distances need a depth map; add --depth-map-layer FILE");
    }
    return mapping;
}

void EffectOptions::applyLayer(headless::ParameterSet& parameters, const Setting& setting,
                               pictures::Messages& messages, std::ostream& out) const {
    const std::string option = optionName(setting.info);
    if (option != kDepthLayer) {
        const auto world = readLayer(setting.text, messages);
        if (option == kShapeLayer) {
            const double channel = parameters.value(parameters.find(kShapeChannel));
            requireShape(*world, static_cast<int>(channel), setting.text);
        }
        parameters.setLayer(setting.info.index, world);
        return;
    }
    const pictures::DepthMap map = pictures::readDepthMap(setting.text, mapping(), messages);
    if (automatic_ && !messages.quiet()) {
        out << "depth: " << pictures::numberText(map.range.least) << " (near) to "
            << pictures::numberText(map.range.most) << " (far)"
            << std::endl;  // a reader may wait for it while the render runs
    }
    parameters.setLayer(setting.info.index, map.world);
}

void EffectOptions::apply(headless::ParameterSet& parameters, pictures::Messages& messages,
                          std::ostream& out) const {
    mapping();  // report wrong usage before any file is read
    const std::vector<Setting> settings = controls_.settings();
    for (const Setting& setting : settings) {
        if (setting.info.type != PF_Param_LAYER) applySetting(parameters, setting);
    }
    for (const Setting& setting : settings) {
        if (setting.info.type == PF_Param_LAYER) applyLayer(parameters, setting, messages, out);
    }
}

}  // namespace cli
