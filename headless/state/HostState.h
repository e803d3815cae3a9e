// SPDX-License-Identifier: Apache-2.0
#pragma once
// The state that the host's functions share.

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "headless/Host.h"
#include "headless/books/Books.h"
#include "headless/books/CallLog.h"
#include "headless/memory/HandleTable.h"
#include "headless/memory/WorldTable.h"
#include "headless/state/CallContext.h"
#include "platform/Callbacks.h"
#include "platform/SmartRender.h"

namespace headless {

struct HostState {
    explicit HostState(const HostOptions& options);
    ~HostState();

    std::unique_ptr<Executor> executor;
    Books books;
    CallLog log;
    Failures failures;
    MemoryMeter meter;
    HandleTable handles{meter, books};
    WorldTable worlds{meter, books};
    PF_UtilCallbacks utils;
    SPBasicSuite basic;
    const std::thread::id mainThread = std::this_thread::get_id();

    // The context of code that runs outside a command.
    ParameterSet parameters;
    CallContext outside;
    std::atomic<bool> outsideCancelled{false};

    std::mutex infoMutex;
    InfoPanel lastInfo;

    // The existing host. Throws std::logic_error if there is none.
    static HostState& current();
};

// The tables of the callbacks.
PF_InteractCallbacks interactCallbacks();
PF_UtilCallbacks utilCallbacks();
SPBasicSuite basicSuite();

// Runs the body of a function that the effect calls: no exception propagates into the effect.
template <class Body>
PF_Err guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

}  // namespace headless
