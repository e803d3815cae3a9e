// SPDX-License-Identifier: Apache-2.0
#pragma once
// The only function that the plug-in exports. The host calls everything through it.

#include "platform/Commands.h"

#if defined(_WIN32)
#define ORBEL_EXPORT __declspec(dllexport)
#else
#define ORBEL_EXPORT __attribute__((visibility("default")))
#endif

// Answers one command. Commands without a handler and unknown ones return 0 and touch nothing. An
// `int` thrown below is a host code and is returned as the command's error; any other exception
// passes through. Render commands may come on several threads at once.
extern "C" ORBEL_EXPORT PF_Err EntryPointFunc(PF_Cmd cmd, PF_InData* in_data, PF_OutData* out_data,
                                              PF_ParamDef* params[], PF_LayerDef* output,
                                              void* extra);
