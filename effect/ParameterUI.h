// SPDX-License-Identifier: Apache-2.0
#pragma once
// Enables and disables the controls, depending on whether they have an effect.

#include "platform/Commands.h"

// Disables the controls that have no effect in the current state and enables the others. Changes
// only the disabled bit in the host's own `params`, and reports each control to the host in turn.
// Returns 0 or the first error, after which no control is changed. User-interface thread.
PF_Err UpdataParamsUI(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output);

// Returns 0 and does nothing: no control asks to be supervised.
PF_Err HandleChangedParam(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                          PF_LayerDef* output, PF_UserChangedParamExtra* extra);
