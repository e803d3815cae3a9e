// SPDX-License-Identifier: Apache-2.0
#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

constexpr AEGP_PluginID kPluginID = 4711;  // any number that is not 0

A_Err registerWithAEGP(void*, const A_char* name, AEGP_PluginID* id) {
    return guarded([&] {
        HostState& host = HostState::current();
        host.log.add("AEGP_RegisterWithAEGP", name);
        if (!name || !id || !onMainThread("AEGP_RegisterWithAEGP"))
            return PF_Err_BAD_CALLBACK_PARAM;
        if (const PF_Err err = host.failures.check(Operation::kRegisterWithAEGP)) return err;
        *id = kPluginID;
        return PF_Err_NONE;
    });
}

constexpr AEGP_UtilitySuite11 makeTable() {
    AEGP_UtilitySuite11 table{};
    table.AEGP_RegisterWithAEGP = registerWithAEGP;
    return table;
}

}  // namespace

const AEGP_UtilitySuite11* utilitySuite() {
    static constexpr AEGP_UtilitySuite11 kTable = makeTable();
    return &kTable;
}

}  // namespace headless
