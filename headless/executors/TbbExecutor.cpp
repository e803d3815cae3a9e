// SPDX-License-Identifier: Apache-2.0
// Iterations on oneTBB's workers.

#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>
#include <oneapi/tbb/version.h>

#include "headless/executors/Executors.h"

namespace headless {

namespace {

class TbbExecutor : public Executor {
public:
    explicit TbbExecutor(int workers)
        : count_(workers),
          control_(oneapi::tbb::global_control::max_allowed_parallelism,
                   static_cast<std::size_t>(workers)),
          arena_(workers) {}

    int workers() const override { return count_; }

    // One task for each body.
    void run(int bodies, const std::function<void(int)>& body) override {
        arena_.execute([&] {
            oneapi::tbb::parallel_for(
                oneapi::tbb::blocked_range<int>(0, bodies, 1),
                [&](const oneapi::tbb::blocked_range<int>& range) {
                    for (int t = range.begin(); t != range.end(); ++t) body(t);
                },
                oneapi::tbb::simple_partitioner{});
        });
    }

private:
    const int count_;
    oneapi::tbb::global_control control_;
    oneapi::tbb::task_arena arena_;
};

}  // namespace

std::unique_ptr<Executor> makeTbbExecutor(int workers) {
    return std::make_unique<TbbExecutor>(workers);
}

std::string tbbVersion() {
    return TBB_runtime_version();
}

}  // namespace headless
