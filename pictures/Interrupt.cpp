// SPDX-License-Identifier: Apache-2.0
#include "pictures/Interrupt.h"

#include <csignal>

#include "pictures/Errors.h"

namespace pictures {
namespace {

// A signal handler may only access lock-free atomics.
std::atomic<bool> interruptCame{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void onInterrupt(int signal) {
    interruptCame.store(true, std::memory_order_relaxed);
    // Some systems restore the default action on delivery; a second Control-C must not end the
    // tool while a file is half written.
    std::signal(signal, onInterrupt);
}

}  // namespace

InterruptGuard::InterruptGuard() {
    interruptCame.store(false);
    previous_ = std::signal(SIGINT, onInterrupt);
}

InterruptGuard::~InterruptGuard() {
    std::signal(SIGINT, previous_ == SIG_ERR ? SIG_DFL : previous_);
}

const std::atomic<bool>& interruptFlag() {
    return interruptCame;
}

void throwIfInterrupted() {
    if (interruptCame.load(std::memory_order_relaxed)) throw Interrupted{};
}

}  // namespace pictures
