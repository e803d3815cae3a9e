// SPDX-License-Identifier: Apache-2.0
#include "cli/options/IdleOptions.h"

#include <algorithm>
#include <memory>

#include "cli/options/ParameterOptions.h"

namespace cli {
namespace {

bool isSwitch(const headless::ParameterInfo& info) {
    return info.type == PF_Param_LAYER || info.type == PF_Param_CHECKBOX;
}

bool isGiven(const std::vector<std::string>& arguments, const std::string& option) {
    const std::string name = "--" + option;
    return std::ranges::any_of(arguments, [&](const std::string& argument) {
        return argument == name || argument.starts_with(name + "=");
    });
}

// The effect's controls, which are as before in the end.
class Trial {
public:
    explicit Trial(headless::Effect& effect) : effect_(effect), before_(effect.parameters()) {}
    ~Trial() {
        effect_.parameters() = before_;
        effect_.updateParamsUI();
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;

    void addLayers(const EffectOptions& options) {
        for (const headless::ParameterInfo& info : before_.infos()) {
            if (info.type == PF_Param_LAYER && options.gives(optionName(info))) turnOn(info);
        }
        effect_.updateParamsUI();
    }

    std::vector<headless::ParameterInfo> greyedOut() const {
        std::vector<headless::ParameterInfo> greyed;
        for (const headless::ParameterInfo& info : before_.infos()) {
            if (info.hasValue() && parameters().disabled(info.index)) greyed.push_back(info);
        }
        return greyed;
    }

    // The options, " and " between them, that together let the effect use a control: each by itself
    // or, for one that is greyed out as well, after the others. Empty if none do.
    std::string switchesOf(int control) {
        const headless::ParameterSet start = parameters();
        std::string names;
        for (const headless::ParameterInfo& info : before_.infos()) {
            if (!isSwitch(info) || parameters().disabled(info.index) || isOn(info)) continue;
            const headless::ParameterSet without = parameters();
            const std::size_t greyed = greyedOut().size();
            turnOn(info);
            effect_.updateParamsUI();
            const bool onTheWay = info.type == PF_Param_LAYER && sameGroup(info, control) &&
                                  greyedOut().size() < greyed;
            if (parameters().disabled(control) && !onTheWay) {
                parameters() = without;
                effect_.updateParamsUI();
                continue;
            }
            names += (names.empty() ? "" : " and ") + switchText(info);
            if (!parameters().disabled(control)) break;
        }
        const bool found = !parameters().disabled(control);
        parameters() = start;
        effect_.updateParamsUI();
        return found ? names : "";
    }

private:
    headless::ParameterSet& parameters() { return effect_.parameters(); }
    const headless::ParameterSet& parameters() const { return effect_.parameters(); }

    bool isOn(const headless::ParameterInfo& info) const {
        if (info.type == PF_Param_LAYER) return parameters().layer(info.index) != nullptr;
        return parameters().value(info.index) != 0.0;
    }
    void turnOn(const headless::ParameterInfo& info) {
        if (info.type == PF_Param_LAYER) {
            parameters().setLayer(info.index,
                                  std::make_shared<headless::World>(1, 1, PF_PixelFormat_ARGB128));
        } else {
            parameters().set(info.index, 1.0);
        }
    }
    bool sameGroup(const headless::ParameterInfo& layer, int control) const {
        return layer.group == before_.info(control).group;
    }
    static std::string switchText(const headless::ParameterInfo& info) {
        return "--" + optionName(info) + (info.type == PF_Param_LAYER ? " FILE" : " on");
    }

    headless::Effect& effect_;
    const headless::ParameterSet before_;
};

}  // namespace

void warnAboutIdleOptions(headless::Effect& effect, const EffectOptions& options,
                          const std::vector<std::string>& arguments, pictures::Messages& messages) {
    Trial trial(effect);
    trial.addLayers(options);
    for (const headless::ParameterInfo& info : trial.greyedOut()) {
        const std::string option = optionName(info);
        if (!isGiven(arguments, option)) continue;
        const std::string switches = trial.switchesOf(info.index);
        messages.warn("--" + option + " has no effect as things are" +
                      (switches.empty() ? "; leave it out" : "; add " + switches));
    }
}

}  // namespace cli
