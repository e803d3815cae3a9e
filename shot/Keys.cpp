// SPDX-License-Identifier: Apache-2.0
#include "shot/Keys.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace shot {
namespace {

constexpr const char* kForm = "keys are FRAME:VALUE or FRAME:VALUE:hold, :linear or :smooth";

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t at = text.find(separator); at != std::string::npos;
         at = text.find(separator, begin)) {
        pieces.push_back(text.substr(begin, at - begin));
        begin = at + 1;
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

int parseFrame(const std::string& text) {
    int frame = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), frame);
    if (error == std::errc::invalid_argument || end != text.data() + text.size()) {
        throw KeyError(std::string(kForm) + ", and \"" + text + "\" is no frame");
    }
    if (error != std::errc{} || frame > kLastFrame || frame < -kLastFrame) {
        throw KeyError("frame " + text + " has more than nine digits");
    }
    return frame;
}

KeyText parseKey(const std::string& text) {
    const std::vector<std::string> pieces = split(text, ':');
    const bool complete = pieces.size() == 2 || pieces.size() == 3;
    if (!complete || pieces[1].empty()) {
        throw KeyError(std::string(kForm) + ", not \"" + text + "\"");
    }
    KeyText key{parseFrame(pieces[0]), pieces[1]};
    if (pieces.size() == 2) return key;
    key.interpolation = interpolationNamed(pieces[2]);
    if (key.interpolation) return key;
    throw KeyError("interpolation is hold, linear or smooth, not \"" + pieces[2] + "\"");
}

std::string pointText(const Point& point, const char* separator) {
    const char* const unit = point.percent ? "%" : "";
    std::string text = exactText(point.x);
    text.append(unit).append(separator).append(exactText(point.y)).append(unit);
    return text;
}

std::string valueText(const Value& value, const char* separator) {
    if (const auto* number = std::get_if<double>(&value)) return exactText(*number);
    if (const auto* box = std::get_if<bool>(&value)) return *box ? "on" : "off";
    if (const auto* point = std::get_if<Point>(&value)) return pointText(*point, separator);
    return std::get<std::string>(value);
}

}  // namespace

const char* interpolationName(Interpolation interpolation) {
    switch (interpolation) {
        case Interpolation::kHold:
            return "hold";
        case Interpolation::kLinear:
            return "linear";
        case Interpolation::kSmooth:
            break;
    }
    return "smooth";
}

std::optional<Interpolation> interpolationNamed(std::string_view name) {
    using enum Interpolation;
    for (const Interpolation each : {kHold, kLinear, kSmooth}) {
        if (name == interpolationName(each)) return each;
    }
    return std::nullopt;
}

void requireAscending(const int* before, int frame) {
    if (before == nullptr || *before < frame) return;
    if (*before == frame) throw KeyError("frame " + std::to_string(frame) + " has two keys");
    throw KeyError("keys are out of order: frame " + std::to_string(frame) + " comes after " +
                   std::to_string(*before));
}

bool hasKeys(std::string_view text) {
    return text.find(':') != std::string_view::npos;
}

std::vector<KeyText> splitKeys(const std::string& text) {
    std::vector<KeyText> keys;
    for (const std::string& piece : split(text, ',')) {
        KeyText key = parseKey(piece);
        requireAscending(keys.empty() ? nullptr : &keys.back().frame, key.frame);
        keys.push_back(std::move(key));
    }
    return keys;
}

std::string exactText(double number) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
    return {text.data(), result.ptr};
}

std::string textOf(const Keys& keys) {
    if (keys.size() == 1) return valueText(keys.front().value, ",");
    std::string text;
    for (const Key& key : keys) {
        text.append(text.empty() ? "" : ",").append(std::to_string(key.frame)).append(":");
        text.append(valueText(key.value, "/"));
        if (key.interpolation) text.append(":").append(interpolationName(*key.interpolation));
    }
    return text;
}

}  // namespace shot
