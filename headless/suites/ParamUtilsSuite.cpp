// SPDX-License-Identifier: Apache-2.0
#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

PF_Err updateParamUI(PF_ProgPtr effectRef, PF_ParamIndex index, const PF_ParamDef* def) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("PF_UpdateParamUI", index);
        CallContext* context = contextOf(effectRef, "PF_UpdateParamUI");
        if (!context || !def || !onMainThread("PF_UpdateParamUI")) return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kUpdateParamUI)) return err;
        if (!context->uiParameters) {
            host.books.fault("PF_UpdateParamUI during " + context->command);
            return PF_Err_INVALID_CALLBACK;
        }
        const bool known = context->uiParameters->setUiFlags(index, def->ui_flags);
        return known ? PF_Err_NONE : PF_Err_INVALID_INDEX;
    });
}

constexpr PF_ParamUtilsSuite3 makeTable() {
    PF_ParamUtilsSuite3 table{};
    table.PF_UpdateParamUI = updateParamUI;
    return table;
}

}  // namespace

const PF_ParamUtilsSuite3* paramUtilsSuite() {
    static constexpr PF_ParamUtilsSuite3 kTable = makeTable();
    return &kTable;
}

}  // namespace headless
