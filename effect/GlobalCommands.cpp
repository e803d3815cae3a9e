// SPDX-License-Identifier: Apache-2.0
#include "effect/GlobalCommands.h"

#include <cstdio>

#include "effect/HandleBlock.h"
#include "effect/Identity.h"
#include "host/AEO_Base.h"
#include "host/SuiteHandler.h"

AEGP_PluginID g_PluginID;

GlobalData::GlobalData(PF_InData* in_data) {
    AEGP_SuiteHandler suites(in_data->pica_basicP);
    error = suites.AEGPUtilitySuite11()->AEGP_RegisterWithAEGP(nullptr, identity::kName, &pluginId);
    g_PluginID = pluginId;
}

GlobalData::~GlobalData() = default;

PF_Err About(PF_InData*, PF_OutData* out_data) {
    std::snprintf(out_data->return_msg, sizeof out_data->return_msg, "%s, v%d.%d.%d\n%s",
                  identity::kName, static_cast<int>(identity::kVersion),
                  static_cast<int>(identity::kSubversion), static_cast<int>(identity::kBugFix),
                  identity::kDescription);
    return PF_Err_NONE;
}

PF_Err GlobalSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
    out_data->my_version = identity::kPackedVersion;
    out_data->out_flags = identity::kOutFlags;
    out_data->out_flags2 = identity::kOutFlags2;

    AEO::InData context(in_data);
    const GlobalData data(in_data);
    const GlobalData* kept = handle_block::create(*in_data->utils, data);
    if (kept == nullptr) return PF_Err_OUT_OF_MEMORY;
    out_data->global_data = AEO::handleOfBlock(kept);
    return PF_Err_NONE;
}

PF_Err GlobalSetdown(PF_InData* in_data) {
    if (in_data->global_data == nullptr) return PF_Err_NONE;
    AEO::InData context(in_data);
    void* locked = in_data->utils->host_lock_handle(in_data->global_data);
    handle_block::destroy(*in_data->utils, handle_block::object<GlobalData>(locked));
    return PF_Err_NONE;
}
