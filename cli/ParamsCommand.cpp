#include "cli/ParamsCommand.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/EffectSession.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Messages.h"

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

// What the control can be: the range, the choices or the box text.
std::string valuesText(const ParameterInfo& info) {
    if (info.hasRange) return info.rangeText();
    if (info.type == PF_Param_CHECKBOX) {
        return info.boxText.empty() ? "on, off" : "on, off: " + info.boxText;
    }
    std::string list;
    for (const std::string& choice : info.choices) list += (list.empty() ? "" : ", ") + choice;
    return list;
}

// The default as the table's other columns write it.
std::string shownDefault(const ParameterInfo& info) {
    if (!info.hasValue()) return "";
    if (info.choices.empty()) return defaultText(info);
    return info.choices.at(static_cast<std::size_t>(info.defaultValue) - 1);
}

void printLine(std::ostream& out, const std::string& label, const std::string& type,
               const std::string& values, const std::string& fallback, const std::string& state) {
    out << std::left << std::setw(33) << label << std::setw(14) << type << std::setw(42) << values
        << std::setw(10) << fallback << state << '\n';
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
                             const std::vector<ParameterInfo>& controls)
    : m_invocation(invocation), m_effectOptions(controls) {
    m_app = parent.add_subcommand("params", "List the effect's controls");
    m_app->allow_extras();
    m_app->add_flag("--json", m_json, "as JSON");
    m_app->add_flag("--state", m_state,
                    "with those greyed out that have no effect under the options below");
    m_app->add_option("--bundle", m_bundle, "file that holds the effect")->type_name("FILE");
    m_effectOptions.addTo(*m_app);
}

int ParamsCommand::run() {
    if (!m_state && m_effectOptions.any()) {
        throw UsageError("options of the effect make sense with --state only; add it");
    }
    EffectSession session(requireBundle(m_bundle, m_invocation.programFolder));
    headless::Effect& effect = session.effect();
    if (m_state) {
        pictures::Messages silent(m_invocation.err, true);
        m_effectOptions.apply(effect.parameters(), silent, m_invocation.out);
        const PF_Err status = effect.updateParamsUI();
        if (status != PF_Err_NONE) {
            throw Failure("the effect can't tell its state (code " + std::to_string(status) + ")");
        }
    }
    if (m_json) {
        printJson(m_invocation.out, effect.parameters(), m_state);
    } else {
        printTable(m_invocation.out, effect.parameters(), m_state);
    }
    return kExitSuccess;
}

}  // namespace cli
