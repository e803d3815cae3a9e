// SPDX-License-Identifier: Apache-2.0
#pragma once
// Iterations over the host's worker threads.

#include "host/AEO_Base.h"

namespace AEO::Iterator {

// How many threads an iteration may use; thread indices are below it. The host's result is ORed
// into `err`: the count is valid only if that is 0 afterwards.
int GetNumThreads(SPBasicSuite& basic, int& err);

// Calls `fn(refcon, thread, i, iterations)` once for each i from 0 to iterations - 1, on up to
// GetNumThreads threads at once, and blocks until all calls are done. A non-zero result of `fn`
// ends the iteration. Returns the host's result unchanged.
int IterateGeneric(SPBasicSuite& basic, int iterations, void* refcon,
                   int (*fn)(void* refcon, int thread, int i, int iterations));

// Runs `x.iterate(thread, i, iterations)` for each i, as IterateGeneric does.
//
// Items of one iteration have to write disjoint memory, memory chosen by `thread` or atomics, and
// only read everything else: the return of this function is the only synchronisation.
template <typename X>
int IterationT(InData& context, X& x, int iterations) {
    struct F {
        // A call with a negative thread index or without an object is skipped and counts as
        // success.
        static int _(void* refcon, int thread, int i, int count) {
            if (thread < 0 || !refcon) return PF_Err_NONE;
            return static_cast<X*>(refcon)->iterate(thread, i, count);
        }
    };
    return IterateGeneric(*context.in_data->pica_basicP, iterations, &x, F::_);
}

}  // namespace AEO::Iterator
