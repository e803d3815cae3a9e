// SPDX-License-Identifier: Apache-2.0
#include "headless/Host.h"

#include "headless/state/HostState.h"

namespace headless {

Host::Host(const HostOptions& options) : state_(std::make_unique<HostState>(options)) {}

Host::~Host() = default;

PF_InData Host::makeInData() {
    return headless::makeInData(*state_, state_->outside);
}

void Host::setGeometry(const Geometry& geometry) {
    state_->outside.geometry = geometry;
}

ParameterSet& Host::parameters() {
    return state_->parameters;
}

void Host::setProgress(std::function<void(int, int)> report) {
    state_->outside.progress = std::move(report);
}

void Host::setCancelled(bool cancelled) {
    state_->outsideCancelled = cancelled;
}

int Host::workers() const {
    return state_->executor->workers();
}

Failures& Host::failures() {
    return state_->failures;
}

void Host::failAt(Operation operation, std::int64_t k, PF_Err code) {
    state_->failures.failAt(operation, k, code);
}

Accounts Host::accounts() const {
    Accounts accounts;
    state_->books.report(accounts);
    state_->handles.report(accounts);
    state_->worlds.report(accounts);
    return accounts;
}

void Host::clearFaults() {
    state_->books.clearFaults();
}

MemoryUse Host::memory() const {
    return state_->meter.use();
}

void Host::setMemoryLimit(std::uint64_t bytes) {
    state_->meter.setLimit(bytes);
}

void Host::resetPeak() {
    state_->meter.resetPeak();
}

int Host::reclaimPreRenderRecords() {
    return state_->handles.disposeAll(kPreRenderRecord);
}

InfoPanel Host::info() const {
    const std::lock_guard lock(state_->infoMutex);
    return state_->lastInfo;
}

void Host::startCallLog() {
    state_->meter.keepRequests(true);
    state_->log.start();
}

std::vector<std::string> Host::takeCallLog() {
    state_->meter.keepRequests(false);
    return state_->log.take();
}

}  // namespace headless
