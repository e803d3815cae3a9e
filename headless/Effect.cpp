// SPDX-License-Identifier: Apache-2.0
#include "headless/Effect.h"

#include <vector>

#include "headless/state/FieldText.h"
#include "headless/state/HostState.h"
#include "platform/CommandNames.h"

namespace headless {

namespace {

CallContext mainContext(PF_Cmd command) {
    CallContext context;
    context.command = commandName(command);
    context.thread = std::this_thread::get_id();
    return context;
}

[[noreturn]] void refuse(PF_Cmd command, PF_Err status) {
    throw EffectError(commandName(command) + " failed with code " + std::to_string(status));
}

}  // namespace

std::string commandName(PF_Cmd command) {
    if (command < 0 || command >= PF_Cmd_NUM_CMDS) return "command " + std::to_string(command);
    return kCommandNames[static_cast<std::size_t>(command)];
}

Effect::Effect(Host& theHost, const std::filesystem::path& file)
    : host_(theHost), bundle_(std::make_unique<Bundle>(file)), entry_(bundle_->entryPoint()) {}

Effect::Effect(Host& theHost, PF_EntryPoint function) : host_(theHost), entry_(function) {}

Effect::~Effect() {
    if (up_) setDown();
}

PF_Err Effect::call(CallContext& context, PF_Cmd command, PF_Handle sequence, PF_OutData& out,
                    PF_ParamDef** params, PF_LayerDef* output, void* extra) {
    PF_InData in = makeInData(host_.state(), context);
    in.num_params = parameters_.size();
    in.global_data = globalData_;
    in.sequence_data = sequence;
    const CommandScope scope(context);
    host_.state().log.add(context.command.c_str());
    return entry_(command, &in, &out, params, output, extra);
}

void Effect::setUp() {
    globalSetUp();
    parametersSetUp();
    const PF_Err status = sendSequence(PF_Cmd_SEQUENCE_SETUP, nullptr, sequenceData_);
    if (status != PF_Err_NONE) refuse(PF_Cmd_SEQUENCE_SETUP, status);
}

void Effect::globalSetUp() {
    CallContext context = mainContext(PF_Cmd_GLOBAL_SETUP);
    globalAnswer_ = {};
    const PF_Err status =
        call(context, PF_Cmd_GLOBAL_SETUP, nullptr, globalAnswer_, nullptr, nullptr, nullptr);
    if (status != PF_Err_NONE) refuse(PF_Cmd_GLOBAL_SETUP, status);
    globalData_ = globalAnswer_.global_data;
    if (globalData_) host_.state().handles.name(globalData_, "global data", true);
    up_ = true;
}

void Effect::parametersSetUp() {
    CallContext context = mainContext(PF_Cmd_PARAMS_SETUP);
    parameters_ = ParameterSet();
    context.declaring = &parameters_;
    PF_OutData out{};
    const PF_Err status =
        call(context, PF_Cmd_PARAMS_SETUP, nullptr, out, nullptr, nullptr, nullptr);
    if (status != PF_Err_NONE) refuse(PF_Cmd_PARAMS_SETUP, status);
    declaredCount_ = out.num_params;
}

void Effect::setDown() {
    PF_OutData out{};
    out.sequence_data = sequenceData_;
    CallContext sequence = mainContext(PF_Cmd_SEQUENCE_SETDOWN);
    call(sequence, PF_Cmd_SEQUENCE_SETDOWN, sequenceData_, out, nullptr, nullptr, nullptr);
    sequenceData_ = nullptr;

    // From here on the effect owns the record again: if it isn't freed, the accounts list it.
    if (globalData_) host_.state().handles.name(globalData_, "global data", false);
    CallContext global = mainContext(PF_Cmd_GLOBAL_SETDOWN);
    call(global, PF_Cmd_GLOBAL_SETDOWN, nullptr, out, nullptr, nullptr, nullptr);
    globalData_ = nullptr;
    up_ = false;
}

std::string Effect::about() {
    PF_OutData out{};
    const PF_Err status = send(PF_Cmd_ABOUT, out);
    if (status != PF_Err_NONE) refuse(PF_Cmd_ABOUT, status);
    return fieldText(out.return_msg);
}

PF_Err Effect::updateParamsUI(A_Time time) {
    CallContext context = mainContext(PF_Cmd_UPDATE_PARAMS_UI);
    context.time = time;
    context.parameters = &parameters_;
    context.uiParameters = &parameters_;

    std::vector<PF_ParamDef> defs;
    defs.reserve(static_cast<std::size_t>(parameters_.size()));
    for (int i = 0; i < parameters_.size(); ++i) {
        defs.push_back(parameters_.evaluate(i, time, context.geometry));
        const auto layer = parameters_.layer(i);
        if (layer) defs.back().u.ld = layer->record();
    }
    std::vector<PF_ParamDef*> pointers;
    pointers.reserve(defs.size());
    for (auto& def : defs) pointers.push_back(&def);

    PF_OutData out{};
    return call(context, PF_Cmd_UPDATE_PARAMS_UI, sequenceData_, out, pointers.data(), nullptr,
                nullptr);
}

PF_Err Effect::sendSequence(PF_Cmd command, PF_Handle in, PF_Handle& out) {
    CallContext context = mainContext(command);
    PF_OutData answer{};
    answer.sequence_data = out;
    const PF_Err status = call(context, command, in, answer, nullptr, nullptr, nullptr);
    // The handle in the record belongs to the host now.
    out = answer.sequence_data;
    if (out) host_.state().handles.name(out, "sequence data", true);
    return status;
}

PF_Err Effect::send(PF_Cmd command, PF_OutData& out, PF_ParamDef** params, PF_LayerDef* output,
                    void* extra) {
    CallContext context = mainContext(command);
    context.parameters = &parameters_;
    return call(context, command, sequenceData_, out, params, output, extra);
}

}  // namespace headless
