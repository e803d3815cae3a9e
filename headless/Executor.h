// SPDX-License-Identifier: Apache-2.0
#pragma once
// The threads that iterations run on.
//
// An effect sees kThreadIndices threads, a fixed number, and each always gets the same items.
// Workers carry them out, as many as there are processors or as the user wants; each begins with
// its own and then takes over those that nobody has begun. Sums that the effect keeps for each
// thread then have the same bits with any number of workers, and uneven items spread by themselves.

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "platform/Suites.h"

namespace headless {

// More workers than this would have nothing to do.
inline constexpr int kThreadIndices = 64;

// Runs a fixed number of bodies on several threads.
class Executor {
public:
    virtual ~Executor() = default;
    // How many bodies can run at the same time.
    virtual int workers() const = 0;
    // Calls body(t) once for each t from 0 to count - 1 and blocks until all have returned. May be
    // called on several threads at once. `body` must not throw.
    virtual void run(int count, const std::function<void(int)>& body) = 0;
};

enum class ExecutorKind { kTbb, kThreads };

// What this build uses by default.
ExecutorKind defaultExecutor();
// Whether this build contains `kind`.
bool hasExecutor(ExecutorKind kind);
// The library behind the default executor with its version, such as "oneTBB 2021.8".
std::string executorVersion();
// 0 workers mean as many as there are processors. Throws std::invalid_argument for an executor that
// this build doesn't contain or a negative count.
std::unique_ptr<Executor> makeExecutor(ExecutorKind kind, int workers);

// Calls fn(refcon, thread, i, iterations) for each i, as AEGP_IterateGeneric does.
//
// The range is divided into contiguous shares, one for each thread index, and a share into chunks.
//
// The result is that of the failing item with the lowest i, as if the items had run one after the
// other: every item below it has run. An `int` thrown by the item counts as a failure and is
// rethrown on the calling thread. Any other exception ends the process. If `cancel` becomes true,
// no new chunk is started, and the result is 517 unless an item failed or all were done.
A_Err iterate(Executor& executor, std::int32_t iterations, void* refcon, AEGP_IterateFunction fn,
              const std::atomic<bool>* cancel = nullptr);

}  // namespace headless
