// SPDX-License-Identifier: Apache-2.0
#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

A_Err getNumThreads(std::int32_t* count) {
    return guarded([&] {
        if (!count) return PF_Err_BAD_CALLBACK_PARAM;
        HostState& host = HostState::current();
        host.log.add("AEGP_GetNumThreads");
        if (const PF_Err err = host.failures.check(Operation::kGetNumThreads)) return err;
        *count = kThreadIndices;
        return PF_Err_NONE;
    });
}

// An `int` thrown by the effect propagates to the effect; its callers unwind by it.
A_Err iterateGeneric(std::int32_t iterations, void* refcon, AEGP_IterateFunction fn) {
    try {
        HostState& host = HostState::current();
        host.log.add("AEGP_IterateGeneric", iterations);
        if (const PF_Err err = host.failures.check(Operation::kIterateGeneric)) return err;
        if (!fn) return PF_Err_BAD_CALLBACK_PARAM;
        return iterate(*host.executor, iterations, refcon, fn, contextOfThread().cancel);
    } catch (int) {
        throw;
    } catch (...) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

}  // namespace

const AEGP_IterateSuite1* iterateSuite() {
    static constexpr AEGP_IterateSuite1 kTable{getNumThreads, iterateGeneric};
    return &kTable;
}

}  // namespace headless
