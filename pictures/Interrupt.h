#pragma once

#include <atomic>

namespace pictures {

// Turns Control-C into a flag for as long as it lives; the former handler returns afterwards.
// One at a time per process.
class InterruptGuard {
public:
    InterruptGuard();
    ~InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;

private:
    void (*m_previous)(int);
};

// Becomes true once Control-C came. Any thread may read it.
const std::atomic<bool>& interruptFlag();

// Throws Interrupted once Control-C came.
void throwIfInterrupted();

}  // namespace pictures
