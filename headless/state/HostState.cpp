// SPDX-License-Identifier: Apache-2.0
#include "headless/state/HostState.h"

#include <stdexcept>

namespace headless {

namespace {

std::atomic<HostState*> livingHost{nullptr};

}  // namespace

HostState::HostState(const HostOptions& options)
    : executor(makeExecutor(options.executor, options.threads)),
      utils(utilCallbacks()),
      basic(basicSuite()) {
    meter.setLimit(options.memoryLimit);
    outside.declaring = &parameters;
    outside.uiParameters = &parameters;
    outside.parameters = &parameters;
    outside.cancel = &outsideCancelled;
    HostState* none = nullptr;
    if (!livingHost.compare_exchange_strong(none, this)) {
        throw std::logic_error("only one host can exist in a process at a time");
    }
}

HostState::~HostState() {
    livingHost = nullptr;
}

HostState& HostState::current() {
    HostState* host = livingHost.load(std::memory_order_acquire);
    if (!host) throw std::logic_error("no host");
    return *host;
}

}  // namespace headless
