// SPDX-License-Identifier: Apache-2.0
#include "headless/memory/MemoryMeter.h"

#include <algorithm>

namespace headless {

bool MemoryMeter::take(std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    if (bytes > held_.limit || held_.current > held_.limit - bytes) return false;
    held_.current += bytes;
    held_.peak = std::max(held_.peak, held_.current);
    if (keeping_) held_.afterEachRequest.push_back(held_.current);
    return true;
}

void MemoryMeter::giveBack(std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    held_.current -= bytes;
}

void MemoryMeter::setLimit(std::uint64_t bytes) {
    const std::lock_guard lock(mutex_);
    held_.limit = bytes;
}

void MemoryMeter::resetPeak() {
    const std::lock_guard lock(mutex_);
    held_.peak = held_.current;
}

void MemoryMeter::keepRequests(bool keep) {
    const std::lock_guard lock(mutex_);
    if (keep) held_.afterEachRequest.clear();
    keeping_ = keep;
}

MemoryUse MemoryMeter::use() const {
    const std::lock_guard lock(mutex_);
    return held_;
}

}  // namespace headless
