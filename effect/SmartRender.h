// SPDX-License-Identifier: Apache-2.0
#pragma once
// The commands of one frame. Both smart-render commands keep their state on the stack, and the
// host may run them for different frames on different threads at once.

#include "platform/Commands.h"
#include "platform/SmartRender.h"

// What PreRender leaves for SmartRender, in a handle of its own after the handle word.
struct PreRenderData {
    PF_LRect frameRect;   // the whole layer at this downsample, from 0, 0
    PF_LRect paddedRect;  // frameRect with the blur's reach around it if the result may grow
};

// Requests the input that the frame needs and reports how large the result will be. Fills the
// output even if a check-out fails. Returns the first error, or 4 if there is no memory for the
// record.
PF_Err PreRender(PF_InData* in_data, PF_OutData* out_data, PF_PreRenderExtra* extra);

// Renders the frame into the host's output world; a blur radius of 0 copies the input. Frees the
// pre-render record, unless a sampling suite or one of the worlds is missing; returns 4 if the
// pre-render had no memory for a record.
PF_Err SmartRender(PF_InData* in_data, PF_OutData* out_data, PF_SmartRenderExtra* extra);

// Prints a debug line and leaves the output as it is: hosts that support smart rendering never ask.
PF_Err Render(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[], PF_LayerDef* output);
