// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Commands.h"

// Declares the effect's 27 controls to the host, in the order of ParameterIndex, and reports their
// number. A refused control doesn't stop the others; returns the bitwise OR of all results.
PF_Err ParamsSetup(PF_InData* in_data, PF_OutData* out_data);
