#include "headless/Host.h"

#include "headless/state/HostState.h"

namespace headless {

Host::Host(const HostOptions& options) : hostState(std::make_unique<HostState>(options)) {}

Host::~Host() = default;

PF_InData Host::makeInData() {
    return headless::makeInData(*hostState, hostState->outside);
}

void Host::setGeometry(const Geometry& geometry) {
    hostState->outside.geometry = geometry;
}

ParameterSet& Host::parameters() {
    return hostState->parameters;
}

void Host::setProgress(std::function<void(int, int)> report) {
    hostState->outside.progress = std::move(report);
}

void Host::setCancelled(bool cancelled) {
    hostState->outsideCancelled = cancelled;
}

int Host::threads() const {
    return hostState->executor->threads();
}

Failures& Host::failures() {
    return hostState->failures;
}

void Host::failAt(Operation operation, std::int64_t k, PF_Err code) {
    hostState->failures.failAt(operation, k, code);
}

Accounts Host::accounts() const {
    Accounts accounts;
    hostState->books.report(accounts);
    hostState->handles.report(accounts);
    hostState->worlds.report(accounts);
    return accounts;
}

void Host::clearFaults() {
    hostState->books.clearFaults();
}

MemoryUse Host::memory() const {
    return hostState->meter.use();
}

void Host::setMemoryLimit(std::uint64_t bytes) {
    hostState->meter.setLimit(bytes);
}

void Host::resetPeak() {
    hostState->meter.resetPeak();
}

int Host::reclaimPreRenderRecords() {
    return hostState->handles.disposeAll(kPreRenderRecord);
}

InfoPanel Host::info() const {
    const std::lock_guard lock(hostState->infoMutex);
    return hostState->lastInfo;
}

void Host::startCallLog() {
    hostState->meter.keepRequests(true);
    hostState->log.start();
}

std::vector<std::string> Host::takeCallLog() {
    hostState->meter.keepRequests(false);
    return hostState->log.take();
}

}  // namespace headless
