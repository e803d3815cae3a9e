// SPDX-License-Identifier: Apache-2.0
#include "cli/options/EffectOptions.h"

#include "cli/Errors.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"
#include "pictures/files/PictureReader.h"

namespace cli {
namespace {

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

}  // namespace

EffectOptions::EffectOptions(std::vector<headless::ParameterInfo> controls)
    : controls_(std::move(controls)) {}

void EffectOptions::addTo(CLI::App& app) {
    controls_.addTo(app);
    if (controls_.empty()) return;
    depth_.addTo(app);
}

bool EffectOptions::any() const {
    return !controls_.settings().empty() || depth_.any();
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

void EffectOptions::applyLayer(headless::ParameterSet& parameters, const Setting& setting,
                               const std::string& file, A_Time time,
                               pictures::Messages& messages) const {
    const auto world = readLayer(file, messages);
    if (optionName(setting.info) == kShapeLayer) {
        requireShape(*world, choiceAt(parameters, kShapeChannel, time), file);
    }
    parameters.setLayer(setting.info.index, world);
}

void EffectOptions::applyControls(headless::ParameterSet& parameters) const {
    for (const Setting& setting : controls_.settings()) {
        if (setting.info.type != PF_Param_LAYER) applySetting(parameters, setting);
    }
    depth_.check(parameters, controls_);
}

std::optional<std::string> EffectOptions::depthFile() const {
    const std::optional<Setting> setting = controls_.setting(kDepthLayer);
    if (!setting) return std::nullopt;
    return setting->text;
}

DepthFindings EffectOptions::depthFindings(const headless::ParameterSet& parameters,
                                           const std::string& file, A_Time time,
                                           std::optional<pictures::DepthKind> found,
                                           pictures::Messages& messages) const {
    return depth_.findings(parameters, controls_, file, time, found, messages);
}

void EffectOptions::tellDepth(const DepthFindings& findings, pictures::Messages& messages,
                              std::ostream& out) const {
    depth_.tell(depthFile().value_or(""), findings, messages, out);
}

std::optional<MapScale> EffectOptions::applyLayers(headless::ParameterSet& parameters,
                                                   const MapUse& use, pictures::Messages& messages,
                                                   std::ostream& out) const {
    for (const Setting& setting : controls_.settings()) {
        const bool layer = setting.info.type == PF_Param_LAYER;
        const bool depth = optionName(setting.info) == kDepthLayer;
        if (!layer || depth) continue;
        const std::string file = use.names ? use.names(setting.text) : setting.text;
        applyLayer(parameters, setting, file, use.time, messages);
    }
    return depth_.apply(parameters, controls_, use, messages, out);
}

}  // namespace cli
