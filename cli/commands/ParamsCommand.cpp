// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/ParamsCommand.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/EffectSession.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Messages.h"
#include "shot/PresetText.h"

namespace cli {
namespace {

using headless::ParameterInfo;
using headless::ParameterSet;

const char* typeName(PF_ParamType type) {
    switch (type) {
        case PF_Param_LAYER:
            return "layer";
        case PF_Param_SLIDER:
            return "whole number";
        case PF_Param_FIX_SLIDER:
        case PF_Param_FLOAT_SLIDER:
            return "number";
        case PF_Param_ANGLE:
            return "angle";
        case PF_Param_CHECKBOX:
            return "box";
        case PF_Param_COLOR:
            return "colour";
        case PF_Param_POINT:
            return "point";
        case PF_Param_POPUP:
            return "choice";
        case PF_Param_GROUP_START:
            return "group";
        case PF_Param_GROUP_END:
            return "end of group";
        default:
            return "unknown";
    }
}

// What the control accepts: its range, its choices, or on and off with the checkbox text.
std::string valuesText(const ParameterInfo& info) {
    if (info.hasRange) return info.rangeText();
    if (info.type == PF_Param_CHECKBOX) {
        return info.boxText.empty() ? "on, off" : "on, off: " + info.boxText;
    }
    std::string list;
    for (const std::string& choice : info.choices) list += (list.empty() ? "" : ", ") + choice;
    return list;
}

// The default in the notation of the table's other columns.
std::string shownDefault(const ParameterInfo& info) {
    if (!info.hasValue()) return "";
    if (info.choices.empty()) return defaultText(info);
    return info.choices.at(static_cast<std::size_t>(info.defaultValue) - 1);
}

void printLine(std::ostream& out, const std::string& label, const std::string& type,
               const std::string& values, const std::string& fallback, const std::string& state) {
    out << std::left << std::setw(33) << label << std::setw(14) << type << std::setw(42) << values
        << std::setw(10) << fallback << (state.empty() ? "" : " ") << state << '\n';
}

void printTable(std::ostream& out, const ParameterSet& parameters, bool state) {
    printLine(out, "label", "type", "range or choices", "default", state ? "state" : "");
    for (const ParameterInfo& info : parameters.infos()) {
        if (info.type == PF_Param_GROUP_END) continue;
        const std::string label = (info.group.empty() ? "" : "  ") + info.label;
        const bool greyed = state && parameters.disabled(info.index);
        printLine(out, label, typeName(info.type), valuesText(info), shownDefault(info),
                  greyed ? "greyed out" : "");
    }
}

nlohmann::ordered_json defaultValue(const ParameterInfo& info) {
    switch (info.type) {
        case PF_Param_LAYER:
            return nullptr;
        case PF_Param_POINT:
            return {info.defaultX, info.defaultY};
        case PF_Param_CHECKBOX:
            return info.defaultValue != 0.0;
        case PF_Param_SLIDER:
        case PF_Param_POPUP:
            return static_cast<int>(info.defaultValue);
        default:
            return info.defaultValue;
    }
}

nlohmann::ordered_json describe(const ParameterInfo& info) {
    nlohmann::ordered_json json = {{"index", info.index},
                                   {"id", info.id},
                                   {"label", info.label},
                                   {"type", typeName(info.type)}};
    if (!info.group.empty()) json["group"] = info.group;
    if (!info.hasValue()) return json;
    json["option"] = "--" + optionName(info);
    if (info.hasRange) {
        json["range"] = {info.validMin, info.validMax};
        json["slider_range"] = {info.sliderMin, info.sliderMax};
        json["decimals"] = info.precision;
    }
    if (!info.choices.empty()) json["choices"] = info.choices;
    if (!info.boxText.empty()) json["box_text"] = info.boxText;
    if (info.type == PF_Param_POINT) json["unit"] = "percent of the layer";
    json["default"] = defaultValue(info);
    json["can_vary"] = info.canVary();
    return json;
}

void printJson(std::ostream& out, const ParameterSet& parameters, bool state) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (const ParameterInfo& info : parameters.infos()) {
        nlohmann::ordered_json json = describe(info);
        if (state) json["enabled"] = !parameters.disabled(info.index);
        list.push_back(std::move(json));
    }
    out << list.dump(2) << '\n';
}

}  // namespace

ParamsCommand::ParamsCommand(CLI::App& parent, const Invocation& invocation,
                             const ParameterSet& controls)
    : invocation_(invocation),
      effectOptions_(controls.infos()),
      presetOptions_(controls, effectOptions_) {
    app_ = parent.add_subcommand("params", "List the effect's controls, or settings as a preset");
    app_->allow_extras();
    app_->add_flag("--json", json_, "print JSON");
    app_->add_flag("--state", state_, "mark controls that are greyed out with the options below");
    app_->add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
    effectOptions_.addTo(*app_);
    presetOptions_.addTo(*app_);
    app_->add_option("--from", from_,
                     "take the settings from the metadata of an image that orbel has written, and "
                     "print them as a preset")
        ->type_name("IMAGE")
        ->group("Presets");
}

void ParamsCommand::load() {
    if (from_.empty()) {
        presetOptions_.load();
    } else if (presetOptions_.file().empty()) {
        presetOptions_.loadFrom(from_);
    } else {
        throw UsageError("--from and --preset exclude each other; leave out one");
    }
}

int ParamsCommand::run() {
    load();
    try {
        list();
    } catch (const UsageError& error) {
        presetOptions_.rethrow(error);
    }
    return kExitSuccess;
}

void ParamsCommand::list() {
    if (presetOptions_.saves()) {
        presetOptions_.checkSaved(effectOptions_.files(), from_);
        presetOptions_.save();
    } else if (!state_ && !from_.empty()) {
        invocation_.out << shot::presetText(presetOptions_.settings({}), shot::Layout::kIndented);
    } else if (!state_ && effectOptions_.any()) {
        throw UsageError(
            "options of the effect make sense only with --state or --save-preset; add one");
    }
    if (!state_ && (presetOptions_.saves() || !from_.empty())) return;
    EffectSession session(requireBundle(bundle_, invocation_.programFolder));
    headless::Effect& effect = session.effect();
    if (state_) showState(effect);
    if (json_) {
        printJson(invocation_.out, effect.parameters(), state_);
    } else {
        printTable(invocation_.out, effect.parameters(), state_);
    }
}

// Lets the effect decide what is greyed out with the options given.
void ParamsCommand::showState(headless::Effect& effect) const {
    pictures::Messages silent(invocation_.err, true);
    const A_Time time{presetOptions_.frame().value_or(0), 1};
    effectOptions_.applyControls(effect.parameters());
    effectOptions_.applyLayers(effect.parameters(), {.time = time}, silent, invocation_.out);
    const PF_Err status = effect.updateParamsUI(time);
    if (status == PF_Err_NONE) return;
    throw Failure("the effect could not update its controls (code " + std::to_string(status) + ")");
}

}  // namespace cli
