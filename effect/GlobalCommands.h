// SPDX-License-Identifier: Apache-2.0
#pragma once
// The plug-in's life in the process: setup, setdown and the about box.

#include "platform/Commands.h"

// The id under which the host knows the plug-in; written by the constructor of GlobalData. The
// plug-in's only writable global.
extern AEGP_PluginID g_PluginID;

// The plug-in's global record. The host keeps it, in a handle of its own, from setup to setdown.
// Rendering doesn't use it.
class GlobalData {
public:
    // Registers the plug-in with the host. A refusal is kept in `error`; throws 516 if the host
    // lacks the suite.
    explicit GlobalData(PF_InData* in_data);
    GlobalData(const GlobalData&) = default;
    GlobalData& operator=(const GlobalData&) = delete;
    virtual ~GlobalData();

    PF_Err error = PF_Err_NONE;
    AEGP_PluginID pluginId = 0;
};

// Writes name, version and description into `return_msg`. Doesn't call the host.
PF_Err About(PF_InData* in_data, PF_OutData* out_data);

// Reports version and flags and leaves a GlobalData in `out_data->global_data`, with its handle
// locked. Returns 4 if the host has no memory for it.
PF_Err GlobalSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef* params[],
                   PF_LayerDef* output);

// Destroys the GlobalData of `in_data->global_data` and frees its handle; does nothing without one.
PF_Err GlobalSetdown(PF_InData* in_data);
