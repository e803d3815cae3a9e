// SPDX-License-Identifier: Apache-2.0
#include "cli/ParameterOptions.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"

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
    throw UsageError("--" + optionName(setting.info) + " takes " + acceptedValues(setting.info) +
                     ", not \"" + setting.text + "\"");
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

double boxValue(const Setting& setting) {
    const std::string text = lowered(setting.text);
    if (text != "on" && text != "off") refuse(setting);
    return text == "on" ? 1.0 : 0.0;
}

void applyPoint(headless::ParameterSet& parameters, const Setting& setting) {
    const Point point = parsePoint("--" + optionName(setting.info), setting.text);
    if (point.percent) {
        parameters.setPointPercent(setting.info.index, point.x, point.y);
    } else {
        parameters.setPoint(setting.info.index, point.x, point.y);
    }
}

double number(const Setting& setting) {
    try {
        return parseNumber("", setting.text);
    } catch (const UsageError&) {
        refuse(setting);
    }
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

// The number of insertions, deletions and replacements that turn one text into the other.
std::size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

const char* placeholder(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_LAYER:
            return "FILE";
        case PF_Param_POINT:
            return "X,Y";
        case PF_Param_CHECKBOX:
            return "on|off";
        case PF_Param_POPUP:
            return "CHOICE";
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
    const std::string name = unknown.substr(0, unknown.find('='));
    std::string nearest;
    std::size_t best = std::max<std::size_t>(3, name.size() / 3);
    for (const std::string& candidate : known) {
        const std::size_t distance = editDistance(name, candidate);
        if (distance >= best) continue;
        best = distance;
        nearest = candidate;
    }
    return nearest;
}

void applySetting(headless::ParameterSet& parameters, const Setting& setting) {
    const ParameterInfo& info = setting.info;
    try {
        if (info.type == PF_Param_POINT) {
            applyPoint(parameters, setting);
        } else if (info.type == PF_Param_POPUP) {
            parameters.set(info.index, choiceNumber(setting));
        } else if (info.type == PF_Param_CHECKBOX) {
            parameters.set(info.index, boxValue(setting));
        } else {
            parameters.set(info.index, number(setting));
        }
    } catch (const headless::ParameterError&) {
        refuse(setting);
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
        const std::string help = acceptedValues(info) + "; default " + defaultText(info);
        declared.option = app.add_option("--" + optionName(info), declared.text, help)
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
