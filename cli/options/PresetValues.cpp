// SPDX-License-Identifier: Apache-2.0
#include "cli/options/PresetValues.h"

#include <algorithm>
#include <set>
#include <utility>

#include "cli/Choices.h"
#include "cli/Numbers.h"
#include "cli/options/CameraOptions.h"
#include "cli/options/ParameterOptions.h"
#include "shot/Controls.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr const char* kShape = "custom-blur-shape";
constexpr const char* kOcio = "ocio";

// A path of a preset as seen from the current folder. Names of something else than a file, such as
// "ocio://default", stay.
std::string fromPreset(const std::string& file, const fs::path& folder) {
    if (file.find("://") != std::string::npos) return file;
    return (folder / file).lexically_normal().string();
}

// A path as seen from `folder`, in which the preset will be.
std::string intoPreset(const std::string& file, const fs::path& folder) {
    if (file.find("://") != std::string::npos) return file;
    const fs::path base = (fs::current_path() / folder).lexically_normal();
    return fs::absolute(file).lexically_normal().lexically_proximate(base).generic_string();
}

std::string pointText(const shot::Point& point) {
    return shot::textOf({{0, point}});
}

std::string cameraText(const shot::CameraInput& camera) {
    std::string text = camera.exif ? "exif" : "";
    const auto add = [&](const char* key, const std::string& value) {
        text += (text.empty() ? "" : ",") + std::string(key) + "=" + value;
    };
    const std::pair<const char*, const std::optional<double>&> numbers[] = {
        {"focal-length", camera.focalLength},
        {"f-stop", camera.fStop},
        {"sensor-width", camera.sensorWidth},
        {"sensor-height", camera.sensorHeight},
        {"focus", camera.focus}};
    for (const auto& [key, number] : numbers) {
        if (number) add(key, shot::exactText(*number));
    }
    if (camera.breathing) add("breathing", "on");
    return text;
}

// Collects the values of a preset's inputs and settings of the tool.
class Values {
public:
    explicit Values(const PlacedPreset& placed) : placed_(placed) {}

    void add(const char* option, const std::string& text, const std::string& place) {
        if (!text.empty()) values_.push_back({option, text, placed_.source + ": " + place});
    }
    void addDepth(const shot::DepthInput& depth) {
        const std::string at = "/inputs/depth/";
        if (depth.file) add(kDepthLayer, fromPreset(*depth.file, placed_.folder), at + "file");
        if (depth.kind) add("depth-kind", *depth.kind, at + "kind");
        if (depth.near) add("depth-near", shot::exactText(*depth.near), at + "near");
        if (depth.far) add("depth-far", shot::exactText(*depth.far), at + "far");
        if (depth.automatic) add("depth-auto", "true", at + "auto");
        if (depth.inverse) add("depth-inverse", "true", at + "inverse");
        if (depth.focus) add("focus", shot::exactText(*depth.focus), at + "focus");
        if (depth.focusAt) add("focus-at", pointText(*depth.focusAt), at + "focus-at");
    }
    void addCamera(const shot::CameraInput& camera) {
        const std::string at = "/inputs/camera";
        add("camera", cameraText(camera), at);
        if (camera.unit) add("scene-unit", *camera.unit, at + "/unit");
    }
    void addTool(const std::string& option, const std::string& text) {
        const std::string value = option == kOcio ? fromPreset(text, placed_.folder) : text;
        add(option.c_str(), value, "/tool/" + option);
    }
    std::vector<PresetValue> take() { return std::move(values_); }

private:
    const PlacedPreset& placed_;
    std::vector<PresetValue> values_;
};

// Reads the options of an app back.
class Options {
public:
    Options(const CLI::App& app, fs::path folder) : app_(app), folder_(std::move(folder)) {}

    bool has(const std::string& option) const { return find(option) != nullptr; }
    bool given(const std::string& option) const { return isGiven(app_, option); }
    bool flag(const std::string& option) const { return given(option) && find(option)->as<bool>(); }
    std::optional<std::string> text(const std::string& option) const {
        if (!given(option)) return std::nullopt;
        auto value = find(option)->as<std::string>();
        return value.empty() ? std::nullopt : std::optional(value);
    }
    std::optional<std::string> file(const std::string& option) const {
        const auto name = text(option);
        return name ? std::optional(intoPreset(*name, folder_)) : std::nullopt;
    }
    std::optional<double> distance(const std::string& option) const {
        const auto value = text(option);
        return value ? std::optional(parseDistance("--" + option, *value)) : std::nullopt;
    }
    // The full name of a choice.
    template <std::size_t N>
    std::optional<std::string> choice(const std::string& option,
                                      const Choice<const char*> (&choices)[N]) const {
        const auto value = text(option);
        return value ? std::optional<std::string>(parseChoice("--" + option, *value, choices))
                     : std::nullopt;
    }

private:
    const CLI::Option* find(const std::string& option) const {
        return app_.get_option_no_throw("--" + option);
    }

    const CLI::App& app_;
    fs::path folder_;
};

std::optional<shot::DepthInput> depthOf(const Options& options) {
    constexpr Choice<const char*> kKinds[] = {
        {"distance", "distance"}, {"disparity", "disparity"}, {"normalised", "normalised"}};
    shot::DepthInput depth{.file = options.file(kDepthLayer),
                           .kind = options.choice("depth-kind", kKinds),
                           .near = options.distance("depth-near"),
                           .far = options.distance("depth-far"),
                           .focus = options.distance("focus"),
                           .automatic = options.flag("depth-auto"),
                           .inverse = options.flag("depth-inverse")};
    if (const auto text = options.text("focus-at")) {
        const Point point = parsePoint("--focus-at", *text);
        depth.focusAt = {point.x, point.y, point.percent};
    }
    return depth == shot::DepthInput{} ? std::nullopt : std::optional(depth);
}

std::optional<shot::CameraInput> cameraOf(const Options& options) {
    constexpr Choice<const char*> kUnits[] = {
        {"m", "m"}, {"cm", "cm"}, {"mm", "mm"}, {"ft", "ft"}, {"in", "in"}};
    const auto text = options.text("camera");
    if (!text) return std::nullopt;
    const CameraWishes wishes = parseCamera(*text);
    return shot::CameraInput{.exif = wishes.exif,
                             .focalLength = wishes.focalLength,
                             .fStop = wishes.fStop,
                             .sensorWidth = wishes.sensorWidth,
                             .sensorHeight = wishes.sensorHeight,
                             .focus = wishes.focus,
                             .breathing = wishes.breathing,
                             .unit = options.choice("scene-unit", kUnits)};
}

// From `base` where the app has no such option.
std::map<std::string, std::string> toolOf(const Options& options, const PlacedPreset& base,
                                          const fs::path& folder) {
    std::map<std::string, std::string> tool;
    for (const shot::ToolOption& option : shot::toolOptions()) {
        const std::string name = option.name;
        std::optional<std::string> value;
        if (!options.has(name)) {
            const auto found = base.preset.tool.find(name);
            if (found == base.preset.tool.end()) continue;
            value = name == kOcio ? intoPreset(fromPreset(found->second, base.folder), folder)
                                  : found->second;
        } else if (option.flag) {
            if (options.flag(name)) value = "true";
        } else {
            value = name == kOcio ? options.file(name) : options.text(name);
            if (name == "occlusion" && value == "off") continue;
        }
        if (value) tool[name] = *value;
    }
    return tool;
}

// The controls that the tool sets by what it finds, or by other options, unless they are given.
std::set<std::string> automaticControls(const shot::Preset& preset) {
    std::set<std::string> names = {"exposure", "placement", "depth-map-channel", "composite-mode"};
    const auto& depth = preset.inputs.depth;
    if (depth && (depth->focus || depth->focusAt)) names.insert("focal-distance");
    if (preset.inputs.camera) names.insert({"blur-radius", "focal-distance", "profile"});
    return names;
}

}  // namespace

bool isGiven(const CLI::App& app, const std::string& option) {
    const CLI::Option* found = app.get_option_no_throw("--" + option);
    return found != nullptr && found->count() > 0;
}

std::vector<PresetValue> valuesOf(const PlacedPreset& placed,
                                  const headless::ParameterSet& controls) {
    Values values(placed);
    headless::ParameterSet set = controls;
    const shot::Preset& preset = placed.preset;
    const std::vector<int> indices = shot::applyParameters(preset, placed.source, set);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const shot::Parameter& parameter = preset.parameters[i];
        values.add(optionName(set.info(indices[i])).c_str(), shot::textOf(parameter.keys),
                   "/parameters/" + parameter.label);
    }
    if (preset.inputs.depth) values.addDepth(*preset.inputs.depth);
    if (preset.inputs.shape) {
        values.add(kShape, fromPreset(*preset.inputs.shape, placed.folder), "/inputs/shape/file");
    }
    if (preset.inputs.camera) values.addCamera(*preset.inputs.camera);
    for (const auto& [option, text] : preset.tool) values.addTool(option, text);
    return values.take();
}

shot::Preset presetOf(const CLI::App& app, const EffectOptions& effect,
                      const headless::ParameterSet& controls, const PlacedPreset& base,
                      const fs::path& folder, const std::string& version) {
    const Options options(app, folder);
    headless::ParameterSet set = controls;
    effect.applyControls(set);
    shot::Preset preset{.version = version, .frame = base.preset.frame};
    preset.inputs = {
        .depth = depthOf(options),
        .shape = options.file(kShape),
        .camera = options.has("camera") ? cameraOf(options) : base.preset.inputs.camera};
    preset.tool = toolOf(options, base, folder);
    const std::set<std::string> automatic = automaticControls(preset);
    preset.parameters = shot::parametersOf(set, [&](const headless::ParameterInfo& info) {
        const std::string option = optionName(info);
        return !automatic.contains(option) || effect.gives(option);
    });
    return preset;
}

}  // namespace cli
