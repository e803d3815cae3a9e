// SPDX-License-Identifier: Apache-2.0
#pragma once
// The bytes that the effect holds, and their limit.

#include <cstdint>
#include <mutex>

#include "headless/Accounts.h"

namespace headless {

// Counts bytes against a limit. All functions may be called from any thread.
class MemoryMeter {
public:
    // False, without counting anything, if the limit would be exceeded.
    bool take(std::uint64_t bytes);
    void giveBack(std::uint64_t bytes);
    void setLimit(std::uint64_t bytes);
    void resetPeak();
    // Starts and ends the list of MemoryUse::afterEachRequest.
    void keepRequests(bool keep);
    MemoryUse use() const;

private:
    mutable std::mutex mutex_;
    MemoryUse held_;
    bool keeping_ = false;
};

}  // namespace headless
