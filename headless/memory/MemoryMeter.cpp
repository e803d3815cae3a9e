#include "headless/memory/MemoryMeter.h"

#include <algorithm>

namespace headless {

bool MemoryMeter::take(std::uint64_t bytes) {
    const std::lock_guard lock(mutex);
    if (bytes > held.limit || held.current > held.limit - bytes) return false;
    held.current += bytes;
    held.peak = std::max(held.peak, held.current);
    if (keeping) held.afterEachRequest.push_back(held.current);
    return true;
}

void MemoryMeter::giveBack(std::uint64_t bytes) {
    const std::lock_guard lock(mutex);
    held.current -= bytes;
}

void MemoryMeter::setLimit(std::uint64_t bytes) {
    const std::lock_guard lock(mutex);
    held.limit = bytes;
}

void MemoryMeter::resetPeak() {
    const std::lock_guard lock(mutex);
    held.peak = held.current;
}

void MemoryMeter::keepRequests(bool keep) {
    const std::lock_guard lock(mutex);
    if (keep) held.afterEachRequest.clear();
    keeping = keep;
}

MemoryUse MemoryMeter::use() const {
    const std::lock_guard lock(mutex);
    return held;
}

}  // namespace headless
