// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <set>

#include "shot/JsonPlace.h"
#include "shot/Nearest.h"
#include "shot/PresetText.h"

namespace shot {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kDeepest = 16;  // a preset has six levels

// Refuses what the parser would take silently: a name that occurs twice in an object.
class NameCheck {
public:
    explicit NameCheck(const std::string& source) : source_(source) {}

    bool operator()(int depth, Json::parse_event_t event, const Json& parsed) {
        using enum Json::parse_event_t;
        if (depth > kDeepest) throw PresetError(source_ + ": is nested too deeply for a preset");
        if (event == object_start) names_.emplace_back();
        if (event == object_end) names_.pop_back();
        if (event == key && !names_.back().insert(parsed.get<std::string>()).second) {
            throw PresetError(source_ + ": \"" + parsed.get<std::string>() +
                              "\" is there twice in one object; leave out one");
        }
        return true;
    }

private:
    const std::string& source_;
    std::vector<std::set<std::string>> names_;  // of the objects that are open
};

Json parseJson(std::string_view text, const std::string& source) {
    if (text.size() > kMostPresetBytes) throw PresetError(source + ": is too large for a preset");
    try {
        return Json::parse(text, NameCheck(source));
    } catch (const Json::exception& error) {
        const std::string what = error.what();  // "[json.exception.name.id] reason"
        const std::size_t begin = what.find("] ");
        throw PresetError(source + ": is not JSON: " +
                          (begin == std::string::npos ? what : what.substr(begin + 2)));
    }
}

using Version = std::array<int, 3>;

std::optional<Version> parseVersion(const std::string& text) {
    Version version{};
    char rest = 0;
    const int count =
        std::sscanf(text.c_str(), "%5d.%5d.%5d%c", &version[0], &version[1], &version[2], &rest);
    if (count != 3) return std::nullopt;
    return version;
}

void requireReadable(const JsonPlace& root, const std::string& program) {
    const std::string effect = root["effect"].text();
    if (effect != kEffectName) {
        root["effect"].fail("is a preset of " + effect + ", not of " + kEffectName);
    }
    const std::string version = root["version"].text();
    const auto written = parseVersion(version);
    if (!written) root["version"].fail("must be like \"1.4.0\", not \"" + version + "\"");
    if (*written <= parseVersion(program).value_or(Version{})) return;
    root["version"].fail("was written by version " + version + ", and this is " + program +
                         "; update it");
}

double percentOf(const JsonPlace& place) {
    const std::string text = place.text();
    double number = 0.0;
    int used = 0;
    if (std::sscanf(text.c_str(), "%lf%n", &number, &used) == 1 &&
        text.substr(static_cast<std::size_t>(used)) == "%" && std::isfinite(number)) {
        return number;
    }
    place.fail("must be like \"50%\", not \"" + text + "\"");
}

Point pointOf(const JsonPlace& place) {
    const std::vector<JsonPlace> items = place.items();
    const bool percent = !items.empty() && items.front().isText();
    if (items.size() != 2) place.fail("must be [x, y] in pixels or [\"x%\", \"y%\"]");
    if (percent) return {percentOf(items[0]), percentOf(items[1]), true};
    return {items[0].number(), items[1].number(), false};
}

Value valueOf(const JsonPlace& place) {
    if (place.isNumber()) return place.number();
    if (place.isBox()) return place.box();
    if (place.isText()) return place.text();
    if (place.isList()) return pointOf(place);
    place.fail("must be a number, true or false, a choice in quotes, a point or {\"keys\": [...]}");
}

Key keyOf(const JsonPlace& place) {
    place.requireMembers({"frame", "value", "interpolation"});
    Key key{place["frame"].whole(-kLastFrame, kLastFrame), valueOf(place["value"])};
    if (!place.has("interpolation")) return key;
    const std::string name = place["interpolation"].text();
    key.interpolation = interpolationNamed(name);
    if (!key.interpolation) {
        place["interpolation"].fail("must be \"hold\", \"linear\" or \"smooth\", not \"" + name +
                                    "\"");
    }
    return key;
}

Keys keysOf(const JsonPlace& place) {
    if (!place.isObject()) return {{0, valueOf(place)}};
    place.requireMembers({"keys"});
    Keys keys;
    for (const JsonPlace& item : place["keys"].items()) {
        Key key = keyOf(item);
        try {
            requireAscending(keys.empty() ? nullptr : &keys.back().frame, key.frame);
        } catch (const KeyError& error) {
            item.fail(std::string(error.what()) + "; each frame has one key, in ascending order");
        }
        keys.push_back(std::move(key));
    }
    if (keys.empty()) place["keys"].fail("must have at least one key");
    if (keys.size() == 1) return {{0, keys.front().value}};
    return keys;
}

std::vector<Parameter> parametersOf(const JsonPlace& place) {
    std::vector<Parameter> parameters;
    for (const std::string& label : place.names()) {
        parameters.push_back({label, keysOf(place[label])});
    }
    return parameters;
}

// A member that may be left out.
template <class Read>
auto optional(const JsonPlace& place, const std::string& name, Read read)
    -> std::optional<decltype(read(place))> {
    if (!place.has(name)) return std::nullopt;
    return read(place[name]);
}

std::string filledText(const JsonPlace& place) {
    std::string text = place.text();
    if (text.empty()) place.fail("must not be empty; leave it out instead");
    return text;
}

std::optional<std::string> textOf(const JsonPlace& place, const std::string& name) {
    return optional(place, name, filledText);
}

bool boxOf(const JsonPlace& place, const std::string& name) {
    return place.has(name) && place[name].box();
}

std::optional<double> distanceOf(const JsonPlace& place, const std::string& name) {
    return optional(place, name, [](const JsonPlace& at) {
        if (at.isText() && at.text() == "inf") return std::numeric_limits<double>::infinity();
        const double number = at.number();
        if (number < 0.0) at.fail("must be at least 0, or \"inf\", not " + exactText(number));
        return number;
    });
}

std::optional<double> lengthOf(const JsonPlace& place, const std::string& name) {
    return optional(place, name, [](const JsonPlace& at) {
        const double number = at.number();
        if (number <= 0.0) at.fail("must be above 0, not " + exactText(number));
        return number;
    });
}

std::optional<std::string> choiceOf(const JsonPlace& place, const std::string& name,
                                    const std::vector<std::string>& choices) {
    auto text = textOf(place, name);
    if (!text || std::ranges::find(choices, *text) != choices.end()) return text;
    std::string list;
    for (const std::string& choice : choices) list += (list.empty() ? "" : ", ") + choice;
    place[name].fail("must be one of " + list + ", not \"" + *text + "\"");
}

DepthInput depthOf(const JsonPlace& place) {
    place.requireMembers({"file", "kind", "near", "far", "focus", "focus-at", "auto", "inverse"});
    return {.file = textOf(place, "file"),
            .kind = choiceOf(place, "kind", {"distance", "disparity", "normalised"}),
            .near = distanceOf(place, "near"),
            .far = distanceOf(place, "far"),
            .focus = distanceOf(place, "focus"),
            .focusAt = optional(place, "focus-at", pointOf),
            .automatic = boxOf(place, "auto"),
            .inverse = boxOf(place, "inverse")};
}

std::string shapeOf(const JsonPlace& place) {
    place.requireMembers({"file"});
    return filledText(place["file"]);
}

CameraInput cameraOf(const JsonPlace& place) {
    place.requireMembers({"exif", "focal-length", "f-stop", "sensor-width", "sensor-height",
                          "focus", "breathing", "unit"});
    return {.exif = boxOf(place, "exif"),
            .focalLength = lengthOf(place, "focal-length"),
            .fStop = lengthOf(place, "f-stop"),
            .sensorWidth = lengthOf(place, "sensor-width"),
            .sensorHeight = lengthOf(place, "sensor-height"),
            .focus = distanceOf(place, "focus"),
            .breathing = boxOf(place, "breathing"),
            .unit = choiceOf(place, "unit", {"m", "cm", "mm", "ft", "in"})};
}

Inputs inputsOf(const JsonPlace& place) {
    place.requireMembers({"depth", "shape", "camera"});
    return {.depth = optional(place, "depth", depthOf),
            .shape = optional(place, "shape", shapeOf),
            .camera = optional(place, "camera", cameraOf)};
}

std::map<std::string, std::string> toolOf(const JsonPlace& place) {
    std::vector<std::string> known;
    for (const ToolOption& option : toolOptions()) known.emplace_back(option.name);
    place.requireMembers(known);
    std::map<std::string, std::string> values;
    for (const ToolOption& option : toolOptions()) {
        if (!place.has(option.name)) continue;
        const JsonPlace at = place[option.name];
        if (option.flag) {
            if (at.box()) values[option.name] = "true";
        } else if (at.isNumber()) {
            values[option.name] = exactText(at.number());
        } else {
            values[option.name] = filledText(at);
        }
    }
    return values;
}

}  // namespace

std::span<const ToolOption> toolOptions() {
    static constexpr ToolOption kOptions[] = {
        {"occlusion", false},    {"region", false},      {"downsample", false},
        {"keep-overscan", true}, {"bits", false},        {"alpha", false},
        {"pixel-aspect", false}, {"colour-in", false},   {"colour-out", false},
        {"ocio", false},         {"linear", true},       {"raw", true},
        {"output-type", false},  {"pass-through", true}, {"crop-to-display", true},
        {"survey", false}};
    return kOptions;
}

Preset parsePreset(std::string_view json, const std::string& source, const std::string& version) {
    const Json document = parseJson(json, source);
    const JsonPlace root(document, source);
    root.names();
    requireReadable(root, version);
    root.requireMembers({"$schema", "effect", "version", "frame", "parameters", "inputs", "tool"});
    Preset preset{.effect = root["effect"].text(), .version = root["version"].text()};
    preset.frame = optional(root, "frame",
                            [](const JsonPlace& at) { return at.whole(-kLastFrame, kLastFrame); });
    if (root.has("parameters")) preset.parameters = parametersOf(root["parameters"]);
    if (root.has("inputs")) preset.inputs = inputsOf(root["inputs"]);
    if (root.has("tool")) preset.tool = toolOf(root["tool"]);
    return preset;
}

}  // namespace shot
