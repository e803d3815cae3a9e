// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <utility>
#include <vector>

#include "headless/Host.h"

namespace cli {

// Measures the steps of a render.
class RenderStats {
public:
    // Ends the step under way and begins the next.
    void begin(std::string name);
    void end();
    // Adds the seconds of the same steps of another frame.
    void add(const RenderStats& other);
    // Prints the seconds of each step, the threads, the peak of the memory that the effect
    // requested and that of the whole process.
    void print(std::ostream& out, const headless::Host& host) const;

private:
    using Clock = std::chrono::steady_clock;

    std::vector<std::pair<std::string, double>> steps_;  // name, seconds
    Clock::time_point start_;
    bool running_ = false;
};

// The largest amount of memory that the process has used, in bytes; 0 if the system doesn't say.
std::uint64_t peakProcessMemory();

}  // namespace cli
