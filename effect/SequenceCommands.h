// SPDX-License-Identifier: Apache-2.0
#pragma once
// The commands for an effect instance's own data. An instance has none: everything that a frame
// needs comes from the parameters, so the handlers keep the host's handle empty. Each returns 0.

#include "platform/Commands.h"

// Free whatever handle the host offers, including a flat form from a saved project.
PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                     PF_LayerDef* output);
PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output);

// Turns the live form in `in_data`, if there is one, into a flat form in `out_data`.
PF_Err SequenceFlatten(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output);

// Frees the handle in `out_data` and leaves the field as it is.
PF_Err SequenceSetdown(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                       PF_LayerDef* output);
