// SPDX-License-Identifier: Apache-2.0
// All commands except those for frames.

#include <chrono>
#include <cstdio>
#include <vector>

#include "trial/Cases.h"
#include "trial/Pictures.h"

namespace trial {

namespace {

double milliseconds(const std::function<void()>& body) {
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// Returns the times as text.
std::string loadAndSetUp(Trial& trial) {
    const double load = milliseconds([&] { trial.load(); });
    const double setUp = milliseconds([&] { trial.effect().setUp(); });
    trial.takeAsStanding();
    char text[80];
    std::snprintf(text, sizeof text, "%.2f ms for loading, %.2f ms for the commands", load, setUp);
    return text;
}

void checkDeclaration(Trial& trial) {
    const headless::Effect& effect = trial.effect();
    trial.check(effect.declaredParameters() == effect.parameters().size(),
                "the effect reports a number of parameters other than it declares");
    trial.check((effect.outFlags() & PF_OutFlag_DEEP_COLOR_AWARE) != 0,
                "support for 16 bits is not declared");
    const PF_OutFlags2 wanted = PF_OutFlag2_SUPPORTS_SMART_RENDER | PF_OutFlag2_FLOAT_COLOR_AWARE |
                                PF_OutFlag2_SUPPORTS_THREADED_RENDERING;
    trial.check((effect.outFlags2() & wanted) == wanted,
                "support for smart, float or threaded rendering is not declared");
    trial.check(effect.version() != 0, "the effect has no version");
}

struct ControlState {
    bool shape;  // a custom shape is chosen
    bool depth;  // a depth map is chosen
    bool points;

    std::string name() const {
        return std::string("controls with") + (shape ? " shape" : "") + (depth ? " depth" : "") +
               (points ? " points" : "") + (shape || depth || points ? "" : " nothing chosen");
    }
};

void checkGreyed(Trial& trial, std::initializer_list<const char*> labels, bool greyed) {
    const headless::ParameterSet& parameters = trial.effect().parameters();
    for (const char* label : labels) {
        trial.check(parameters.disabled(parameters.find(label)) == greyed,
                    std::string(label) + (greyed ? " isn't greyed out" : " is greyed out"));
    }
}

void tryState(Trial& trial, const ControlState& state) {
    headless::ParameterSet& parameters = trial.effect().parameters();
    const Picture picture = depthPicture(8, 8, 8);
    parameters.setLayer(parameters.find("Custom Blur Shape"), state.shape ? picture : nullptr);
    parameters.setLayer(parameters.find("Depth Map/Layer"), state.depth ? picture : nullptr);
    parameters.set("Use Focus Point", state.points ? 1 : 0);
    trial.check(trial.effect().updateParamsUI() == PF_Err_NONE, "PF_Cmd_UPDATE_PARAMS_UI failed");
    checkGreyed(trial, {"Vertices", "Roundness", "Concentration", "Deform", "Rotation"},
                state.shape);
    checkGreyed(trial, {"Custom Layer Channel"}, !state.shape);
    checkGreyed(trial,
                {"Depth Map/Channel", "Placement", "Resolution", "Use Focus Point", "Profile",
                 "Invert Depth Map", "Composite Mode", "Remove Edge Leak", "Detect Edge Threshold"},
                !state.depth);
    checkGreyed(trial, {"Focal Distance"}, !state.depth || state.points);
    checkGreyed(trial, {"Focus Point 0", "Focus Point 1", "Focus Point 0-1 Interpolation"},
                !state.depth || !state.points);
    checkGreyed(trial, {"Blur Radius", "Custom Blur Shape", "Exposure", "Depth Map/Layer"}, false);
}

void tryUserChangedParam(Trial& trial) {
    const headless::ParameterSet& parameters = trial.effect().parameters();
    std::vector<PF_ParamDef> defs;
    defs.reserve(static_cast<std::size_t>(parameters.size()));
    for (int i = 0; i < parameters.size(); ++i) defs.push_back(parameters.evaluate(i, {0, 1}, {}));
    std::vector<PF_ParamDef*> pointers;
    pointers.reserve(defs.size());
    for (PF_ParamDef& def : defs) pointers.push_back(&def);
    for (int i = 1; i < parameters.size(); ++i) {
        PF_UserChangedParamExtra extra{i};
        PF_OutData out{};
        const PF_Err status =
            trial.effect().send(PF_Cmd_USER_CHANGED_PARAM, out, pointers.data(), nullptr, &extra);
        trial.check(status == PF_Err_NONE && out.out_flags == 0,
                    "refused for parameter " + std::to_string(i));
    }
}

void tryUnanswered(Trial& trial) {
    for (const PF_Cmd command : {PF_Cmd_DO_DIALOG, PF_Cmd_FRAME_SETUP, PF_Cmd_FRAME_SETDOWN,
                                 PF_Cmd_EVENT, PF_Cmd_QUERY_DYNAMIC_FLAGS, PF_Cmd_NUM_CMDS}) {
        PF_OutData out{};
        const PF_Err status = trial.effect().send(command, out);
        trial.check(status == PF_Err_NONE && out.out_flags == 0 && out.return_msg[0] == '\0',
                    headless::commandName(command) + " is not ignored");
    }
}

void trySequence(Trial& trial, PF_Cmd command, bool offered) {
    const PF_InData host = trial.host().makeInData();
    PF_Handle record = offered ? host.utils->host_new_handle(16) : nullptr;
    const PF_Err status = trial.effect().sendSequence(command, nullptr, record);
    trial.check(status == PF_Err_NONE, "code " + std::to_string(status));
    // Set-down frees the record but doesn't clear the field.
    if (command != PF_Cmd_SEQUENCE_SETDOWN)
        trial.check(record == nullptr, "the effect returned a record");
}

}  // namespace

void trySetUp(Trial& trial) {
    const std::string times = loadAndSetUp(trial);
    trial.run("load and set-up", [&] {
        trial.report().note(times);
        checkDeclaration(trial);
    });
    trial.run("about", [&] {
        const std::string text = trial.effect().about();
        trial.report().note(text.substr(0, text.find('\n')));
        trial.check(text.starts_with("Orbel, v"), "unexpected text: " + text);
    });
}

void tryControls(Trial& trial) {
    for (const bool shape : {false, true}) {
        for (const bool depth : {false, true}) {
            for (const bool points : {false, true}) {
                const ControlState state{shape, depth, points};
                trial.run(state.name(), [&] { tryState(trial, state); });
            }
        }
    }
    headless::ParameterSet& parameters = trial.effect().parameters();
    for (int i = 1; i < parameters.size(); ++i) {
        if (parameters.info(i).hasValue()) parameters.reset(i);
    }
    trial.run("changed parameters", [&] { tryUserChangedParam(trial); });
    trial.run("unhandled commands", [&] { tryUnanswered(trial); });
}

void trySequences(Trial& trial) {
    for (const bool offered : {false, true}) {
        for (const PF_Cmd command : {PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_RESETUP,
                                     PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN}) {
            trial.run(headless::commandName(command) + (offered ? " with a record" : ""),
                      [&] { trySequence(trial, command, offered); });
        }
    }
}

void trySetDown(Trial& trial) {
    const auto setDown = [&] {
        trial.effect().setDown();
        trial.unload();
        trial.takeAsStanding();
        trial.check(trial.host().memory().current == 0, "host memory is in use after the set-down");
    };
    trial.run("set-down", setDown);
    trial.run("set-up and set-down again", [&] {
        trial.report().note(loadAndSetUp(trial));
        setDown();
    });
}

}  // namespace trial
