// SPDX-License-Identifier: Apache-2.0
#pragma once
// The threads that iterations run on.

#include <atomic>
#include <functional>
#include <memory>

#include "platform/Suites.h"

namespace headless {

// Runs a fixed number of bodies on several threads.
class Executor {
public:
    virtual ~Executor() = default;
    // How many bodies can run at the same time.
    virtual int threads() const = 0;
    // Calls body(t) once for each t from 0 to count - 1 and blocks until all have returned. May be
    // called on several threads at once. `body` must not throw.
    virtual void run(int count, const std::function<void(int)>& body) = 0;
};

enum class ExecutorKind { kTbb, kThreads };

// What this build uses by default.
ExecutorKind defaultExecutor();
// Whether this build contains `kind`.
bool hasExecutor(ExecutorKind kind);
// `threads` 0 means as many as the processor has. Throws std::invalid_argument for an executor that
// this build doesn't contain or a negative count.
std::unique_ptr<Executor> makeExecutor(ExecutorKind kind, int threads);

// Calls fn(refcon, thread, i, iterations) for each i, as AEGP_IterateGeneric does.
//
// The range is divided into chunks, and chunk c goes to thread index c mod T, in ascending order.
// For a given number of threads T each index sees the same items in the same order every time, so
// per-thread sums have the same bits.
//
// The result is that of the failing item with the lowest i, as if the items had run one after the
// other: every item below it has run. An `int` thrown by the item counts as a failure and is
// rethrown on the calling thread. Any other exception ends the process. If `cancel` becomes true,
// no new chunk is started, and the result is 517 unless an item failed or all were done.
A_Err iterate(Executor& executor, std::int32_t iterations, void* refcon, AEGP_IterateFunction fn,
              const std::atomic<bool>* cancel = nullptr);

}  // namespace headless
