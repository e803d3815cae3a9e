// SPDX-License-Identifier: Apache-2.0
#include "cli/options/ParameterOptions.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/help/ControlMeanings.h"
#include "pictures/Text.h"
#include "shot/Controls.h"
#include "shot/Nearest.h"

namespace cli {
namespace {

using headless::ParameterInfo;

char lower(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Lower case, and one hyphen for each run of anything but letters and digits.
std::string hyphenated(const std::string& label) {
    std::string name;
    for (const char c : label) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            name += lower(c);
        } else if (!name.empty() && name.back() != '-') {
            name += '-';
        }
    }
    while (!name.empty() && name.back() == '-') name.pop_back();
    return name;
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
}

[[noreturn]] void refuse(const Setting& setting) {
    std::vector<std::string> choices = setting.info.choices;
    for (std::string& choice : choices) choice = lowered(choice);
    throw UsageError("--" + optionName(setting.info) + " takes " + acceptedValues(setting.info) +
                     ", not \"" + setting.text + "\"" +
                     shot::suggestion(lowered(setting.text), choices));
}

// Whether a choice's text is the one given, in any letter case and with hyphens for what isn't a
// letter or digit.
bool isChoice(const std::string& choice, const std::string& given) {
    return lowered(given) == lowered(choice) || hyphenated(given) == hyphenated(choice);
}

bool beginsWith(const std::string& choice, const std::string& given) {
    const std::string plain = hyphenated(given);
    return (!given.empty() && lowered(choice).starts_with(lowered(given))) ||
           (!plain.empty() && hyphenated(choice).starts_with(plain));
}

[[noreturn]] void refuseAmbiguous(const Setting& setting, const std::vector<std::string>& fitting) {
    std::string list;
    for (const std::string& choice : fitting)
        list += (list.empty() ? "" : " or ") + lowered(choice);
    throw UsageError("--" + optionName(setting.info) + " \"" + setting.text +
                     "\" is ambiguous: " + list);
}

// The number of the choice that the setting names by its text, its beginning or its number.
int choiceNumber(const Setting& setting) {
    const auto& choices = setting.info.choices;
    std::vector<std::string> fitting;
    int number = 0;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        const int own = static_cast<int>(i + 1);
        if (setting.text == std::to_string(own) || isChoice(choices[i], setting.text)) return own;
        if (!beginsWith(choices[i], setting.text)) continue;
        fitting.push_back(choices[i]);
        number = own;
    }
    if (fitting.empty()) refuse(setting);
    if (fitting.size() > 1) refuseAmbiguous(setting, fitting);
    return number;
}

bool boxValue(const Setting& setting) {
    const std::string text = lowered(setting.text);
    if (text != "on" && text != "off") refuse(setting);
    return text == "on";
}

double number(const Setting& setting) {
    try {
        return parseNumber("", setting.text);
    } catch (const UsageError&) {
        refuse(setting);
    }
}

shot::Value valueOf(const Setting& setting) {
    switch (setting.info.type) {
        case PF_Param_POINT: {
            const Point point = parsePoint("--" + optionName(setting.info), setting.text);
            return shot::Point{point.x, point.y, point.percent};
        }
        case PF_Param_POPUP:
            return static_cast<double>(choiceNumber(setting));
        case PF_Param_CHECKBOX:
            return boxValue(setting);
        default:
            return number(setting);
    }
}

// Throws UsageError unless the control can have the value.
void requireValue(const Setting& setting, const shot::Key& key) {
    try {
        shot::keyframeOf(setting.info, {key.frame, key.value});
    } catch (const headless::ParameterError&) {
        refuse(setting);
    }
}

// The keys of a text. The coordinates of a point in it are separated by a slash.
shot::Keys keysOf(const Setting& setting) {
    shot::Keys keys;
    for (const shot::KeyText& text : shot::splitKeys(setting.text)) {
        Setting single{setting.info, text.value};
        if (single.info.type == PF_Param_POINT) std::ranges::replace(single.text, '/', ',');
        keys.push_back({text.frame, valueOf(single), text.interpolation});
        requireValue(single, keys.back());
    }
    return keys;
}

std::string choiceList(const ParameterInfo& info) {
    std::string list;
    for (std::size_t i = 0; i < info.choices.size(); ++i) {
        const bool last = i + 1 == info.choices.size();
        if (i > 0) list += last ? " or " : ", ";
        list += lowered(info.choices[i]) + " (" + std::to_string(i + 1) + ")";
    }
    return list;
}

// The choices as they can be typed without quotes: those with other characters by their number.
std::string choiceNames(const ParameterInfo& info) {
    std::string names;
    for (std::size_t i = 0; i < info.choices.size(); ++i) {
        const std::string name = hyphenated(info.choices[i]);
        const bool plain = name.size() == info.choices[i].size();
        names += (names.empty() ? "" : "|") + (plain ? name : std::to_string(i + 1));
    }
    return names;
}

std::string placeholder(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_LAYER:
            return "FILE";
        case PF_Param_POINT:
            return "X,Y";
        case PF_Param_CHECKBOX:
            return "on|off";
        case PF_Param_POPUP:
            return choiceNames(info);
        case PF_Param_ANGLE:
            return "DEGREES";
        default:
            return "NUMBER";
    }
}

}  // namespace

std::string optionName(const ParameterInfo& info) {
    const bool needsGroup = info.label == "Layer" || info.label == "Channel";
    if (!info.group.empty() && needsGroup) return hyphenated(info.group + " " + info.label);
    return hyphenated(info.label);
}

std::string acceptedValues(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_LAYER:
            return "an image file";
        case PF_Param_POINT:
            return kPointForm;
        case PF_Param_CHECKBOX:
            return "on or off";
        case PF_Param_POPUP:
            return choiceList(info);
        case PF_Param_ANGLE:
            return "degrees";
        default:
            break;
    }
    const std::string kind = info.type == PF_Param_SLIDER ? "a whole number" : "a number";
    return info.hasRange ? kind + " from " + info.rangeText() : kind;
}

std::string defaultText(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_LAYER:
            return "none";
        case PF_Param_POINT:
            return pictures::numberText(info.defaultX) + "%," +
                   pictures::numberText(info.defaultY) + "%";
        case PF_Param_CHECKBOX:
            return info.defaultValue != 0.0 ? "on" : "off";
        case PF_Param_POPUP: {
            const auto choice = static_cast<std::size_t>(info.defaultValue);
            const bool known = choice >= 1 && choice <= info.choices.size();
            return known ? lowered(info.choices[choice - 1])
                         : pictures::numberText(info.defaultValue);
        }
        case PF_Param_ANGLE:
            return pictures::numberText(info.defaultValue);
        default:
            return info.format(info.defaultValue);
    }
}

std::string nearestOption(const std::string& unknown, const std::vector<std::string>& known) {
    return shot::nearestName(unknown.substr(0, unknown.find('=')), known);
}

int choiceAt(const headless::ParameterSet& parameters, const char* label, A_Time time) {
    return static_cast<int>(parameters.value(parameters.find(label), time));
}

void applySetting(headless::ParameterSet& parameters, const Setting& setting) {
    if (!shot::hasKeys(setting.text)) {
        const shot::Keys keys = {{0, valueOf(setting)}};
        requireValue(setting, keys.front());
        shot::setKeys(parameters, setting.info.index, keys);
        return;
    }
    const std::string option = "--" + optionName(setting.info) + ": ";
    try {
        shot::setKeys(parameters, setting.info.index, keysOf(setting));
    } catch (const shot::KeyError& error) {
        throw UsageError(option + error.what());
    } catch (const headless::ParameterError& error) {
        throw UsageError(option + error.what());
    }
}

ParameterOptions::ParameterOptions(std::vector<ParameterInfo> controls) {
    for (ParameterInfo& info : controls) {
        if (info.hasValue()) options_.push_back({std::move(info), {}, nullptr});
    }
}

void ParameterOptions::addTo(CLI::App& app) {
    for (Declared& declared : options_) {
        const ParameterInfo& info = declared.info;
        declared.option = app.add_option("--" + optionName(info), declared.text, controlHelp(info))
                              ->type_name(placeholder(info))
                              ->group(info.group.empty() ? "Effect" : "Effect: " + info.group);
    }
}

std::vector<Setting> ParameterOptions::settings() const {
    std::vector<Setting> given;
    for (const Declared& declared : options_) {
        if (declared.option != nullptr && declared.option->count() > 0) {
            given.push_back({declared.info, declared.text});
        }
    }
    return given;
}

std::optional<Setting> ParameterOptions::setting(const std::string& option) const {
    for (const Setting& setting : settings()) {
        if (optionName(setting.info) == option) return setting;
    }
    return std::nullopt;
}

}  // namespace cli
