// SPDX-License-Identifier: Apache-2.0
#include "headless/Executor.h"

#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "headless/executors/Executors.h"

namespace headless {

namespace {

// Pieces of a share between which a worker looks for a failure or a cancel.
constexpr std::int64_t kChunksPerShare = 8;

// One running iteration, shared by its workers.
class Iteration {
public:
    Iteration(std::int32_t count, void* context, AEGP_IterateFunction function,
              const std::atomic<bool>* stop, int workers)
        : iterations_(count), refcon_(context), fn_(function), cancel_(stop), workers_(workers) {
        for (int w = 0; w < workers; ++w) next_[static_cast<std::size_t>(w)] = firstOf(w);
    }

    // What worker `w` does. It begins with shares of its own, the same in every iteration, whose
    // data its cache may hold from the last one, and then takes over what others haven't begun.
    void work(int w) noexcept {
        for (int k = 0; k < workers_; ++k) {
            const int owner = (w + k) % workers_;
            const std::int32_t end = firstOf(owner + 1);
            std::atomic<std::int32_t>& next = next_[static_cast<std::size_t>(owner)];
            for (std::int32_t t = next++; t < end; t = next++) {
                if (!runShare(t)) return;
            }
        }
    }

    A_Err result() const {
        if (thrown_) throw code_;
        if (code_ != PF_Err_NONE) return code_;
        return cancelled_ ? PF_Interrupt_CANCEL : PF_Err_NONE;
    }

private:
    // The items of thread index t, in ascending order; false if the iteration is to end.
    bool runShare(std::int32_t t) {
        const std::int64_t first = startOf(t);
        const std::int64_t last = startOf(t + 1);
        const std::int64_t chunk = std::max<std::int64_t>(1, (last - first) / kChunksPerShare);
        for (std::int64_t begin = first; begin < last; begin += chunk) {
            if (begin > failedAt_.load(std::memory_order_relaxed)) return false;
            if (cancel_ && cancel_->load(std::memory_order_relaxed)) {
                cancelled_.store(true, std::memory_order_relaxed);
                return false;
            }
            const std::int64_t end = std::min(begin + chunk, last);
            runChunk(t, static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end));
        }
        return true;
    }

    // The first thread index of a worker's own.
    std::int32_t firstOf(int worker) const { return worker * kThreadIndices / workers_; }

    std::int64_t startOf(std::int64_t t) const { return t * iterations_ / kThreadIndices; }

    void runChunk(std::int32_t t, std::int32_t begin, std::int32_t end) {
        // Copied, since a call could change what a member holds: most items do next to nothing.
        void* const refcon = refcon_;
        const AEGP_IterateFunction fn = fn_;
        const std::int32_t iterations = iterations_;
        std::int32_t i = begin;
        try {
            for (; i < end; ++i) {
                const A_Err err = fn(refcon, t, i, iterations);
                if (err != PF_Err_NONE) {
                    fail(i, err, false);
                    return;
                }
            }
        } catch (int err) {
            fail(i, err, true);
        }
    }

    // Keeps the failure of the lowest item.
    void fail(std::int32_t i, A_Err err, bool byException) {
        const std::lock_guard lock(mutex_);
        if (i >= failedAt_) return;
        failedAt_ = i;
        code_ = err;
        thrown_ = byException;
    }

    const std::int32_t iterations_;
    void* const refcon_;
    const AEGP_IterateFunction fn_;
    const std::atomic<bool>* const cancel_;

    const int workers_;
    std::array<std::atomic<std::int32_t>, kThreadIndices> next_{};  // thread index, of each worker
    std::atomic<std::int32_t> failedAt_{std::numeric_limits<std::int32_t>::max()};
    std::atomic<bool> cancelled_{false};
    std::mutex mutex_;
    A_Err code_ = PF_Err_NONE;
    bool thrown_ = false;
};

int workersOrAll(int workers) {
    if (workers < 0) throw std::invalid_argument("negative number of threads");
    if (workers > 0) return workers;
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

}  // namespace

ExecutorKind defaultExecutor() {
    return hasExecutor(ExecutorKind::kTbb) ? ExecutorKind::kTbb : ExecutorKind::kThreads;
}

bool hasExecutor(ExecutorKind kind) {
#ifdef ORBEL_HAS_TBB
    return kind == ExecutorKind::kTbb || kind == ExecutorKind::kThreads;
#else
    return kind == ExecutorKind::kThreads;
#endif
}

std::string executorVersion() {
#ifdef ORBEL_HAS_TBB
    return "oneTBB " + tbbVersion();
#else
    return "threads of the standard library";
#endif
}

std::unique_ptr<Executor> makeExecutor(ExecutorKind kind, int workers) {
    const int count = workersOrAll(workers);
    if (!hasExecutor(kind)) throw std::invalid_argument("this build doesn't contain the executor");
#ifdef ORBEL_HAS_TBB
    if (kind == ExecutorKind::kTbb) return makeTbbExecutor(count);
#endif
    return makeThreadsExecutor(count);
}

A_Err iterate(Executor& executor, std::int32_t iterations, void* refcon, AEGP_IterateFunction fn,
              const std::atomic<bool>* cancel) {
    if (iterations <= 0) return PF_Err_NONE;
    const int workers = std::min({executor.workers(), kThreadIndices, iterations});
    Iteration iteration(iterations, refcon, fn, cancel, workers);
    if (workers == 1) {
        iteration.work(0);
    } else {
        executor.run(workers, [&](int w) { iteration.work(w); });
    }
    return iteration.result();
}

}  // namespace headless
