// SPDX-License-Identifier: Apache-2.0
// Iterations on a pool of std::thread: for the thread sanitizer, which can't see into an
// uninstrumented library, and for platforms without oneTBB.

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "headless/executors/Executors.h"

namespace headless {

namespace {

class ThreadsExecutor : public Executor {
public:
    explicit ThreadsExecutor(int workers) : count_(workers) {
        // The calling thread works too.
        for (int i = 1; i < workers; ++i) workers_.emplace_back([this] { work(); });
    }

    ~ThreadsExecutor() override {
        {
            const std::lock_guard lock(mutex_);
            closing_ = true;
        }
        wake_.notify_all();
        for (auto& worker : workers_) worker.join();
    }

    int workers() const override { return count_; }

    void run(int bodies, const std::function<void(int)>& body) override {
        Job job{&body, bodies, bodies};
        std::unique_lock lock(mutex_);
        jobs_.push_back(&job);
        wake_.notify_all();
        while (job.next < job.bodies) runNext(job, lock);
        done_.wait(lock, [&] { return job.unfinished == 0; });
    }

private:
    struct Job {
        const std::function<void(int)>* body;
        int bodies;
        int unfinished;
        int next = 0;
    };

    // Runs one body of `job` with the lock released. A job leaves the queue when its last body is
    // taken, so the queue holds only jobs with work.
    void runNext(Job& job, std::unique_lock<std::mutex>& lock) {
        const int body = job.next++;
        if (job.next == job.bodies) jobs_.erase(std::find(jobs_.begin(), jobs_.end(), &job));
        lock.unlock();
        (*job.body)(body);
        lock.lock();
        if (--job.unfinished == 0) done_.notify_all();
    }

    void work() {
        std::unique_lock lock(mutex_);
        while (true) {
            wake_.wait(lock, [this] { return closing_ || !jobs_.empty(); });
            if (closing_) return;
            runNext(*jobs_.front(), lock);
        }
    }

    const int count_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    std::deque<Job*> jobs_;
    bool closing_ = false;
    std::vector<std::thread> workers_;
};

}  // namespace

std::unique_ptr<Executor> makeThreadsExecutor(int workers) {
    return std::make_unique<ThreadsExecutor>(workers);
}

}  // namespace headless
