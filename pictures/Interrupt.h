// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace pictures {

// Turns Control-C into a flag during its lifetime; the destructor restores the previous handler.
// Libraries don't look at the flag, and some decode a whole file in one call. If the guard still
// exists a moment after Control-C, a thread of it therefore removes the unfinished files and ends
// the process with exit code 130. Only one guard can exist in a process at a time.
class InterruptGuard {
public:
    // `lastWords` go to standard error before the thread ends the process.
    explicit InterruptGuard(std::string lastWords);
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void watch();

    std::string lastWords_;
    void (*previous_)(int);
    std::mutex mutex_;
    std::condition_variable ended_;
    bool ending_ = false;
    std::thread watcher_;
};

// Becomes true after Control-C. Any thread may read it.
const std::atomic<bool>& interruptFlag();

// Throws Interrupted after Control-C.
void throwIfInterrupted();

}  // namespace pictures
