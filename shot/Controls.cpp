// SPDX-License-Identifier: Apache-2.0
#include "shot/Controls.h"

#include <algorithm>
#include <set>

#include "shot/JsonPlace.h"
#include "shot/Nearest.h"

namespace shot {
namespace {

using headless::Keyframe;
using headless::ParameterError;
using headless::ParameterInfo;
using headless::ParameterSet;

bool isChoice(const ParameterInfo& info) {
    return info.type == PF_Param_POPUP;
}

std::string quotedList(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "\"" : ", \"") + name + "\"";
    return list;
}

// What a control takes, in JSON's words.
std::string wantedText(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_CHECKBOX:
            return "true or false";
        case PF_Param_POINT:
            return "[x, y] in pixels or [\"x%\", \"y%\"]";
        case PF_Param_POPUP:
            return "one of " + quotedList(info.choices);
        case PF_Param_SLIDER:
            return "a whole number from " + info.rangeText();
        default:
            return info.hasRange ? "a number from " + info.rangeText() : "a number";
    }
}

[[noreturn]] void refuse(const ParameterInfo& info, const std::string& why) {
    throw ParameterError(info.label + ": " + why);
}

bool sameText(const std::string& a, const std::string& b) {
    const auto lower = [](unsigned char c) { return std::tolower(c); };
    return std::ranges::equal(a, b, {}, lower, lower);
}

// The number of the choice with this text.
double choiceNamed(const ParameterInfo& info, const std::string& text) {
    const auto found = std::ranges::find_if(
        info.choices, [&](const std::string& choice) { return sameText(choice, text); });
    if (found == info.choices.end()) refuse(info, "takes " + wantedText(info));
    return static_cast<double>(found - info.choices.begin() + 1);
}

bool hasOneNumber(const ParameterInfo& info) {
    return info.type != PF_Param_POINT && info.type != PF_Param_CHECKBOX;
}

Keyframe frameOf(const ParameterInfo& info, const Value& value) {
    if (const auto* point = std::get_if<Point>(&value)) {
        if (info.type == PF_Param_POINT) return {.value = point->x, .y = point->y};
    } else if (const auto* box = std::get_if<bool>(&value)) {
        if (info.type == PF_Param_CHECKBOX) return {.value = *box ? 1.0 : 0.0};
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        if (isChoice(info)) return {.value = choiceNamed(info, *text)};
    } else if (hasOneNumber(info)) {
        info.requireValue(std::get<double>(value));
        return {.value = std::get<double>(value)};
    }
    refuse(info, "takes " + wantedText(info));
}

Interpolation interpolationOf(const ParameterInfo& info, const Key& key) {
    const auto usual = info.interpolates() ? Interpolation::kLinear : Interpolation::kHold;
    const Interpolation wanted = key.interpolation.value_or(usual);
    if (info.interpolates() || wanted == Interpolation::kHold) return wanted;
    refuse(info, "has no values between two keys; leave out \"" +
                     std::string(interpolationName(wanted)) + "\"");
}

bool inPercent(const Key& key) {
    const auto* point = std::get_if<Point>(&key.value);
    return point != nullptr && point->percent;
}

Value valueOf(const ParameterInfo& info, const Keyframe& key, bool percent) {
    switch (info.type) {
        case PF_Param_CHECKBOX:
            return key.value != 0.0;
        case PF_Param_POINT:
            return Point{key.value, key.y, percent};
        case PF_Param_POPUP:
            return info.choices.at(static_cast<std::size_t>(key.value) - 1);
        default:
            return key.value;
    }
}

// The label by which ParameterSet::find() finds the control.
std::string labelOf(const ParameterSet& parameters, const ParameterInfo& info) {
    try {
        parameters.find(info.label);
        return info.label;
    } catch (const ParameterError&) {
        return info.group + "/" + info.label;
    }
}

std::vector<std::string> labelsOf(const ParameterSet& parameters) {
    std::vector<std::string> labels;
    for (const ParameterInfo& info : parameters.infos()) {
        if (info.hasValue() && info.type != PF_Param_LAYER) {
            labels.push_back(labelOf(parameters, info));
        }
    }
    return labels;
}

// The parameters of a preset, each at its place in the file.
class Applier {
public:
    Applier(const std::string& source, ParameterSet& parameters)
        : source_(source), parameters_(parameters) {}

    int apply(const Parameter& parameter) {
        place_ = {"parameters", parameter.label};
        const int index = indexOf(parameter.label);
        const ParameterInfo& info = parameters_.info(index);
        if (info.type == PF_Param_LAYER) fail("is a layer; its file belongs in \"inputs\"");
        if (!seen_.insert(index).second) fail("is given twice");
        if (parameter.keys.size() > 1 && !info.canVary())
            fail("can't vary in time; give one value");
        for (std::size_t i = 0; i < parameter.keys.size(); ++i) {
            check(info, parameter.keys, i);
        }
        setKeys(parameters_, index, parameter.keys);
        return index;
    }

private:
    [[noreturn]] void fail(const std::string& why) const {
        throw PresetError(atPlace(source_, place_) + why);
    }

    int indexOf(const std::string& label) const {
        try {
            return parameters_.find(label);
        } catch (const ParameterError& error) {
            fail(error.what() + suggestion(label, labelsOf(parameters_)));
        }
    }

    void check(const ParameterInfo& info, const Keys& keys, std::size_t i) {
        place_ = {"parameters", info.label};
        if (keys.size() > 1) place_.insert(place_.end(), {"keys", std::to_string(i)});
        try {
            keyframeOf(info, keys[i]);
        } catch (const ParameterError& error) {
            // The place names the control already.
            const std::string why = error.what();
            const std::string prefix = info.label + ": ";
            fail(why.starts_with(prefix) ? why.substr(prefix.size()) : why);
        }
        if (inPercent(keys[i]) != inPercent(keys.front())) {
            fail("keys are in pixels or in percent, all of them");
        }
    }

    const std::string& source_;
    ParameterSet& parameters_;
    std::set<int> seen_;
    std::vector<std::string> place_;
};

}  // namespace

Keyframe keyframeOf(const ParameterInfo& info, const Key& key) {
    Keyframe frame = frameOf(info, key.value);
    frame.time = {key.frame, 1};
    frame.interpolation = interpolationOf(info, key);
    return frame;
}

void setKeys(ParameterSet& parameters, int index, const Keys& keys) {
    std::vector<Keyframe> frames;
    for (const Key& key : keys) {
        frames.push_back(keyframeOf(parameters.info(index), key));
        if (inPercent(key) == inPercent(keys.front())) continue;
        refuse(parameters.info(index), "keys are in pixels or in percent, all of them");
    }
    if (inPercent(keys.front())) {
        parameters.setKeysPercent(index, std::move(frames));
    } else {
        parameters.setKeys(index, std::move(frames));
    }
}

Keys keysOf(const ParameterSet& parameters, int index) {
    const ParameterInfo& info = parameters.info(index);
    const bool percent = parameters.inPercent(index);
    const auto& frames = parameters.keys(index);
    if (frames.size() == 1) return {{0, valueOf(info, frames.front(), percent)}};
    Keys keys;
    for (const Keyframe& frame : frames) {
        const Interpolation said = info.interpolates() ? frame.interpolation : Interpolation::kHold;
        keys.push_back({frame.time.value, valueOf(info, frame, percent), said});
    }
    return keys;
}

std::vector<int> applyParameters(const Preset& preset, const std::string& source,
                                 ParameterSet& parameters) {
    Applier applier(source, parameters);
    std::vector<int> indices;
    indices.reserve(preset.parameters.size());
    for (const Parameter& parameter : preset.parameters) {
        indices.push_back(applier.apply(parameter));
    }
    return indices;
}

std::vector<Parameter> parametersOf(const ParameterSet& parameters,
                                    const std::function<bool(const ParameterInfo&)>& wanted) {
    std::vector<Parameter> found;
    for (const ParameterInfo& info : parameters.infos()) {
        if (!info.hasValue() || info.type == PF_Param_LAYER || !wanted(info)) continue;
        found.push_back({labelOf(parameters, info), keysOf(parameters, info.index)});
    }
    return found;
}

}  // namespace shot
