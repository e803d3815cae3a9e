// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

namespace pictures {

// Turns Control-C into a flag during its lifetime; the destructor restores the previous handler.
// Only one can exist in a process at a time.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void (*previous_)(int);
};

// Becomes true after Control-C. Any thread may read it.
const std::atomic<bool>& interruptFlag();

// Throws Interrupted after Control-C.
void throwIfInterrupted();

}  // namespace pictures
