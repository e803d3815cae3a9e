// SPDX-License-Identifier: Apache-2.0
#include "headless/Executor.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "headless/executors/Executors.h"

namespace headless {

namespace {

// Chunks per thread index. More of them balance uneven items better and notice a cancel earlier;
// fewer of them keep the cost of a chunk (two loads) negligible.
constexpr std::int32_t kChunksPerThread = 64;

// One running iteration, shared by its threads.
class Iteration {
public:
    Iteration(std::int32_t count, void* context, AEGP_IterateFunction function,
              const std::atomic<bool>* stop, int threadCount)
        : iterations_(count),
          refcon_(context),
          fn_(function),
          cancel_(stop),
          threads_(threadCount),
          chunk_(std::max<std::int32_t>(1, count / (threadCount * kChunksPerThread))) {}

    // All chunks of thread index t, in ascending order.
    void runThread(std::int32_t t) noexcept {
        const std::int64_t stride = static_cast<std::int64_t>(chunk_) * threads_;
        for (std::int64_t begin = static_cast<std::int64_t>(chunk_) * t; begin < iterations_;
             begin += stride) {
            if (begin > failedAt_.load(std::memory_order_relaxed)) return;
            if (cancel_ && cancel_->load(std::memory_order_relaxed)) {
                cancelled_.store(true, std::memory_order_relaxed);
                return;
            }
            const auto end = std::min<std::int64_t>(begin + chunk_, iterations_);
            runChunk(t, static_cast<std::int32_t>(begin), static_cast<std::int32_t>(end));
        }
    }

    A_Err result() const {
        if (thrown_) throw code_;
        if (code_ != PF_Err_NONE) return code_;
        return cancelled_ ? PF_Interrupt_CANCEL : PF_Err_NONE;
    }

private:
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
    const int threads_;
    const std::int32_t chunk_;

    std::atomic<std::int32_t> failedAt_{std::numeric_limits<std::int32_t>::max()};
    std::atomic<bool> cancelled_{false};
    std::mutex mutex_;
    A_Err code_ = PF_Err_NONE;
    bool thrown_ = false;
};

int threadsOrAll(int threads) {
    if (threads < 0) throw std::invalid_argument("negative number of threads");
    if (threads > 0) return threads;
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

std::unique_ptr<Executor> makeExecutor(ExecutorKind kind, int threads) {
    const int count = threadsOrAll(threads);
    if (!hasExecutor(kind)) throw std::invalid_argument("this build doesn't contain the executor");
#ifdef ORBEL_HAS_TBB
    if (kind == ExecutorKind::kTbb) return makeTbbExecutor(count);
#endif
    return makeThreadsExecutor(count);
}

A_Err iterate(Executor& executor, std::int32_t iterations, void* refcon, AEGP_IterateFunction fn,
              const std::atomic<bool>* cancel) {
    if (iterations <= 0) return PF_Err_NONE;
    const int threads = std::min(executor.threads(), iterations);
    Iteration iteration(iterations, refcon, fn, cancel, executor.threads());
    executor.run(threads, [&](int t) { iteration.runThread(t); });
    return iteration.result();
}

}  // namespace headless
