// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <nlohmann/json.hpp>

#include "shot/PresetText.h"

namespace shot {
namespace {

using Json = nlohmann::ordered_json;

// Whole numbers without a decimal point, and infinity as a text.
Json numberJson(double number) {
    constexpr double kExactlyWhole = 1e15;
    if (std::isinf(number)) return "inf";
    if (number == std::floor(number) && std::fabs(number) < kExactlyWhole) {
        return static_cast<std::int64_t>(number);
    }
    return number;
}

Json pointJson(const Point& point) {
    if (point.percent) return {exactText(point.x) + "%", exactText(point.y) + "%"};
    return {numberJson(point.x), numberJson(point.y)};
}

Json valueJson(const Value& value) {
    if (const auto* number = std::get_if<double>(&value)) return numberJson(*number);
    if (const auto* box = std::get_if<bool>(&value)) return *box;
    if (const auto* point = std::get_if<Point>(&value)) return pointJson(*point);
    return std::get<std::string>(value);
}

Json keysJson(const Keys& keys) {
    if (keys.size() == 1) return valueJson(keys.front().value);
    Json list = Json::array();
    for (const Key& key : keys) {
        Json json = {{"frame", key.frame}, {"value", valueJson(key.value)}};
        if (key.interpolation) json["interpolation"] = interpolationName(*key.interpolation);
        list.push_back(std::move(json));
    }
    return {{"keys", std::move(list)}};
}

void add(Json& json, const char* name, const std::optional<double>& number) {
    if (number) json[name] = numberJson(*number);
}

void add(Json& json, const char* name, const std::optional<std::string>& text) {
    if (text) json[name] = *text;
}

void add(Json& json, const char* name, bool box) {
    if (box) json[name] = true;
}

Json depthJson(const DepthInput& depth) {
    Json json = Json::object();
    add(json, "file", depth.file);
    add(json, "kind", depth.kind);
    add(json, "near", depth.near);
    add(json, "far", depth.far);
    add(json, "auto", depth.automatic);
    add(json, "inverse", depth.inverse);
    add(json, "focus", depth.focus);
    if (depth.focusAt) json["focus-at"] = pointJson(*depth.focusAt);
    return json;
}

Json cameraJson(const CameraInput& camera) {
    Json json = Json::object();
    add(json, "exif", camera.exif);
    add(json, "focal-length", camera.focalLength);
    add(json, "f-stop", camera.fStop);
    add(json, "sensor-width", camera.sensorWidth);
    add(json, "sensor-height", camera.sensorHeight);
    add(json, "focus", camera.focus);
    add(json, "breathing", camera.breathing);
    add(json, "unit", camera.unit);
    return json;
}

Json inputsJson(const Inputs& inputs) {
    Json json = Json::object();
    if (inputs.depth) json["depth"] = depthJson(*inputs.depth);
    if (inputs.shape) json["shape"] = {{"file", *inputs.shape}};
    if (inputs.camera) json["camera"] = cameraJson(*inputs.camera);
    return json;
}

// In the order of toolOptions().
Json toolJson(const std::map<std::string, std::string>& values) {
    Json json = Json::object();
    for (const ToolOption& option : toolOptions()) {
        const auto found = values.find(option.name);
        if (found == values.end()) continue;
        json[option.name] = option.flag ? Json(true) : Json(found->second);
    }
    return json;
}

std::string asciiText(const Json& json) {
    return json.dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string enclosed(std::string text, bool object) {
    text.insert(text.begin(), object ? '{' : '[');
    text += object ? '}' : ']';
    return text;
}

// On one line, with a space after each comma and colon.
std::string spacedText(const Json& json) {
    if (!json.is_structured()) return asciiText(json);
    std::string text;
    for (const auto& item : json.items()) {
        text += text.empty() ? "" : ", ";
        if (json.is_object()) text += asciiText(item.key()) + ": ";
        text += spacedText(item.value());
    }
    return enclosed(text, json.is_object());
}

// A line for each member and for each key; points stay on one line.
std::string indentedText(const Json& json, const std::string& indent) {
    const bool keys = json.is_array() && !json.empty() && json.front().is_object();
    if (!keys && (!json.is_object() || json.empty())) return spacedText(json);
    const std::string deeper = indent + "  ";
    std::string text;
    for (const auto& item : json.items()) {
        text.append(text.empty() ? "\n" : ",\n").append(deeper);
        text += keys ? spacedText(item.value())
                     : asciiText(item.key()) + ": " + indentedText(item.value(), deeper);
    }
    text += "\n" + indent;
    return enclosed(text, !keys);
}

}  // namespace

std::string presetText(const Preset& preset, Layout layout) {
    Json json = {{"effect", preset.effect}, {"version", preset.version}};
    if (preset.frame) json["frame"] = *preset.frame;
    Json parameters = Json::object();
    for (const Parameter& parameter : preset.parameters) {
        parameters[parameter.label] = keysJson(parameter.keys);
    }
    json["parameters"] = std::move(parameters);
    if (preset.inputs != Inputs{}) json["inputs"] = inputsJson(preset.inputs);
    if (!preset.tool.empty()) json["tool"] = toolJson(preset.tool);
    return layout == Layout::kOneLine ? asciiText(json) : indentedText(json, "") + "\n";
}

}  // namespace shot
