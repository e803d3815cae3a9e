// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the effect holds and has not returned, and what it did wrong.

#include <cstdint>
#include <string>
#include <vector>

namespace headless {

// One kind of thing that is still lent to the effect.
struct Outstanding {
    std::string kind;         // "suite", "handle", "world", "parameter" or "layer"
    std::string name;         // such as "PF World Suite 2" or "pre-render record"
    int count = 0;            // how many of it
    std::uint64_t bytes = 0;  // of host memory, for handles and worlds
    int locks = 0;            // locks still held, for handles
};

// The name of the record that the effect keeps for a frame between its two commands.
inline constexpr const char* kPreRenderRecord = "pre-render record";

// A snapshot of the host's books. Data that the effect handed over to the host (global and sequence
// data) belongs to the host and isn't listed.
struct Accounts {
    std::vector<Outstanding> outstanding;
    std::vector<std::string> faults;  // misuse of the interface, in the order it happened

    // Nothing is lent.
    bool allGivenBack() const { return outstanding.empty(); }
    // Nothing is lent except things of this name.
    bool allGivenBackBut(const std::string& name) const;
    // Nothing is lent and no fault was recorded.
    bool clean() const { return outstanding.empty() && faults.empty(); }
    // One line for each entry; empty if there is none.
    std::string describe() const;
};

// Host memory that the effect uses: handles and the worlds that it requested. The worlds of a frame
// (input, output, layers) are the host's own and not counted.
struct MemoryUse {
    std::uint64_t current = 0;  // bytes
    std::uint64_t peak = 0;
    std::uint64_t limit = 0;
    // `current` after each successful request for memory, in order, while the call log is
    // recording.
    std::vector<std::uint64_t> afterEachRequest;
};

}  // namespace headless
