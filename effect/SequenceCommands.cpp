// SPDX-License-Identifier: Apache-2.0
#include "effect/SequenceCommands.h"

#include "effect/HandleBlock.h"
#include "effect/SequenceData.h"
#include "host/AEO_Base.h"

namespace {

void disposeOffered(PF_InData& in_data, const PF_OutData& out_data) {
    if (out_data.sequence_data == nullptr) return;
    in_data.utils->host_dispose_handle(out_data.sequence_data);
}

void dropOffered(PF_InData& in_data, PF_OutData& out_data) {
    disposeOffered(in_data, out_data);
    out_data.sequence_data = nullptr;
}

}  // namespace

PF_Err SequenceSetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
    AEO::InData context(in_data);
    dropOffered(*in_data, *out_data);
    return PF_Err_NONE;
}

PF_Err SequenceResetup(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
    AEO::InData context(in_data);
    dropOffered(*in_data, *out_data);
    return PF_Err_NONE;
}

PF_Err SequenceFlatten(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
    AEO::InData context(in_data);
    if (in_data->sequence_data == nullptr) {
        dropOffered(*in_data, *out_data);
        return PF_Err_NONE;
    }
    void* locked = in_data->utils->host_lock_handle(in_data->sequence_data);
    auto* live = handle_block::object<SequenceData>(locked);
    out_data->sequence_data = live->serialize(in_data);
    handle_block::destroy(*in_data->utils, live);
    return PF_Err_NONE;
}

PF_Err SequenceSetdown(PF_InData* in_data, PF_OutData* out_data, PF_ParamDef*[], PF_LayerDef*) {
    AEO::InData context(in_data);
    disposeOffered(*in_data, *out_data);
    return PF_Err_NONE;
}
