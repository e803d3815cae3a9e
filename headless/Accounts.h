#pragma once
// What the effect has been given and has not given back, and what it did wrong.

#include <cstdint>
#include <string>
#include <vector>

namespace headless {

// One kind of thing that is still out.
struct Outstanding {
    std::string kind;         // "suite", "handle", "world", "parameter" or "layer"
    std::string name;         // such as "PF World Suite 2" or "pre-render record"
    int count = 0;            // how many of it
    std::uint64_t bytes = 0;  // of host memory, for handles and worlds
    int locks = 0;            // locks that still stand, for handles
};

// The name under which a frame's record stands that the effect leaves for its render command.
inline constexpr const char* kPreRenderRecord = "pre-render record";

// A snapshot of the host's books. What the effect handed over to the host (global and sequence
// data) is the host's and not listed.
struct Accounts {
    std::vector<Outstanding> outstanding;
    std::vector<std::string> faults;  // misuse of the interface, in the order it happened

    // Nothing is out.
    bool allGivenBack() const { return outstanding.empty(); }
    // Nothing is out except things of this name.
    bool allGivenBackBut(const std::string& name) const;
    // Nothing is out and no fault was recorded.
    bool clean() const { return outstanding.empty() && faults.empty(); }
    // One line for each entry; empty if there is none.
    std::string describe() const;
};

// Host memory in use by the effect: handles and the worlds it asked for. The pictures of a frame
// (input, output, layers) are the host's own and not counted.
struct MemoryUse {
    std::uint64_t current = 0;  // bytes
    std::uint64_t peak = 0;
    std::uint64_t limit = 0;
    // `current` after each successful request for memory, in order, while the call log records.
    std::vector<std::uint64_t> afterEachRequest;
};

}  // namespace headless
