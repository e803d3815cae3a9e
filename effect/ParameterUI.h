#pragma once
// Keeps the state of the controls in step with what they can do.

#include "platform/Commands.h"

// Greys out the controls that have no effect in the present state and frees the others. Touches
// nothing but the disabled bit in the host's own `params`, and tells the host of each control in
// turn. Returns 0 or the first failure, behind which no control is touched. User-interface thread.
PF_Err UpdataParamsUI(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                      PF_LayerDef* output);

// Returns 0 and does nothing: no control asks to be supervised.
PF_Err HandleChangedParam(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                          PF_LayerDef* output, PF_UserChangedParamExtra* extra);
