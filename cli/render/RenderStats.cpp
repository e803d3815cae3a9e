// SPDX-License-Identifier: Apache-2.0
#include "cli/render/RenderStats.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#ifdef _WIN32
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>
#else
#include <sys/resource.h>
#endif

namespace cli {
namespace {

double mebibytes(std::uint64_t bytes) {
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

}  // namespace

void RenderStats::begin(std::string name) {
    end();
    steps_.emplace_back(std::move(name), 0.0);
    start_ = Clock::now();
    running_ = true;
}

void RenderStats::end() {
    if (!running_) return;
    steps_.back().second = std::chrono::duration<double>(Clock::now() - start_).count();
    running_ = false;
}

void RenderStats::add(const RenderStats& other) {
    if (steps_.empty()) {
        for (const auto& [name, seconds] : other.steps_) steps_.emplace_back(name, 0.0);
    }
    for (std::size_t i = 0; i < std::min(steps_.size(), other.steps_.size()); ++i) {
        steps_[i].second += other.steps_[i].second;
    }
}

void RenderStats::print(std::ostream& out, const headless::Host& host) const {
    char text[160];
    for (const auto& [name, seconds] : steps_) {
        std::snprintf(text, sizeof text, "%s %.3f s, ", name.c_str(), seconds);
        out << text;
    }
    std::snprintf(text, sizeof text,
                  "%d threads; peak memory %.1f MiB, of which the effect requested %.1f MiB\n",
                  host.workers(), mebibytes(peakProcessMemory()), mebibytes(host.memory().peak));
    out << text;
}

std::uint64_t peakProcessMemory() {
#ifdef _WIN32
    PROCESS_MEMORY_COUNTERS counters{};
    if (GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) == 0) return 0;
    return counters.PeakWorkingSetSize;
#else
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
#ifdef __APPLE__
    constexpr std::uint64_t kUnit = 1;
#else
    constexpr std::uint64_t kUnit = 1024;
#endif
    return static_cast<std::uint64_t>(usage.ru_maxrss) * kUnit;
#endif
}

}  // namespace cli
