// SPDX-License-Identifier: Apache-2.0
#include "pictures/Interrupt.h"

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "pictures/Errors.h"
#include "pictures/UnfinishedFile.h"
#include "pictures/files/LibraryOutput.h"

namespace pictures {
namespace {

// Together, with the time that a system takes to free gigabytes, less than a second.
constexpr std::chrono::milliseconds kPoll{50};
constexpr std::chrono::milliseconds kPatience{300};

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

InterruptGuard::InterruptGuard(std::string lastWords) : lastWords_(std::move(lastWords)) {
    interruptCame.store(false);
    previous_ = std::signal(SIGINT, onInterrupt);
    watcher_ = std::thread([this] { watch(); });
}

InterruptGuard::~InterruptGuard() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    ended_.notify_one();
    watcher_.join();
    std::signal(SIGINT, previous_ == SIG_ERR ? SIG_DFL : previous_);
}

// A signal handler can't wake a thread by any means of the standard library, so it polls.
void InterruptGuard::watch() {
    std::unique_lock lock(mutex_);
    const auto ending = [this] { return ending_; };
    while (!interruptCame.load(std::memory_order_relaxed)) {
        if (ended_.wait_for(lock, kPoll, ending)) return;
    }
    if (ended_.wait_for(lock, kPatience, ending)) return;
    removeUnfinishedFiles();
    restoreErrorStream();
    std::fputs(lastWords_.c_str(), stderr);
    std::_Exit(kExitInterrupted);
}

const std::atomic<bool>& interruptFlag() {
    return interruptCame;
}

void throwIfInterrupted() {
    if (interruptCame.load(std::memory_order_relaxed)) throw Interrupted{};
}

}  // namespace pictures
