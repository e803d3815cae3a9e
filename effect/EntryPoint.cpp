// SPDX-License-Identifier: Apache-2.0
#include "effect/EntryPoint.h"

#include "effect/GlobalCommands.h"
#include "effect/ParameterUI.h"
#include "effect/Parameters.h"
#include "effect/SequenceCommands.h"
#include "effect/SmartRender.h"

namespace {

PF_Err answer(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
              PF_LayerDef* output, void* extra) {
    switch (cmd) {
        case PF_Cmd_ABOUT:
            return About(in_data, out_data);
        case PF_Cmd_GLOBAL_SETUP:
            return GlobalSetup(in_data, out_data, params, output);
        case PF_Cmd_GLOBAL_SETDOWN:
            return GlobalSetdown(in_data);
        case PF_Cmd_PARAMS_SETUP:
            return ParamsSetup(in_data, out_data);
        case PF_Cmd_SEQUENCE_SETUP:
            return SequenceSetup(in_data, out_data, params, output);
        case PF_Cmd_SEQUENCE_RESETUP:
            return SequenceResetup(in_data, out_data, params, output);
        case PF_Cmd_SEQUENCE_FLATTEN:
            return SequenceFlatten(in_data, out_data, params, output);
        case PF_Cmd_SEQUENCE_SETDOWN:
            return SequenceSetdown(in_data, out_data, params, output);
        case PF_Cmd_RENDER:
            return Render(in_data, out_data, params, output);
        case PF_Cmd_USER_CHANGED_PARAM:
            return HandleChangedParam(in_data, out_data, params, output,
                                      static_cast<PF_UserChangedParamExtra*>(extra));
        case PF_Cmd_UPDATE_PARAMS_UI:
            return UpdataParamsUI(in_data, out_data, params, output);
        case PF_Cmd_SMART_PRE_RENDER:
            return PreRender(in_data, out_data, static_cast<PF_PreRenderExtra*>(extra));
        case PF_Cmd_SMART_RENDER:
            return SmartRender(in_data, out_data, static_cast<PF_SmartRenderExtra*>(extra));
        default:
            return PF_Err_NONE;
    }
}

}  // namespace

PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output, void* extra) {
    try {
        return answer(cmd, in_data, out_data, params, output, extra);
    } catch (int err) {
        return err;
    }
}
