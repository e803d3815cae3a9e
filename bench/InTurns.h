// SPDX-License-Identifier: Apache-2.0
#pragma once
// Comparisons of two sides in one run: in turns, so that other load on the machine affects both
// alike, and by medians.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

// Seconds of processor time, of all threads.
template <class Work>
double processorSeconds(Work&& work) {
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// Seconds by the clock.
template <class Work>
double clockSeconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Turns of each comparison, after one that doesn't count.
constexpr int kTurns = 7;

// Reports the time of `ours`, and as counters the other side's median (`peer`, seconds) and the
// ratio of the two. `seconds` measures one run of a side; `between` runs after each turn.
template <class Measure, class Ours, class Theirs, class Between>
void compareInTurns(benchmark::State& state, Measure&& seconds, Ours&& ours, Theirs&& theirs,
                    Between&& between) {
    std::vector<double> ourSeconds, theirSeconds;
    seconds(ours);
    seconds(theirs);
    for (auto _ : state) {
        ourSeconds.push_back(seconds(ours));
        theirSeconds.push_back(seconds(theirs));
        state.SetIterationTime(ourSeconds.back());
        between(ourSeconds.size());
    }
    state.counters["peer"] = median(theirSeconds);
    state.counters["ratio"] = median(ourSeconds) / median(theirSeconds);
}

template <class Ours, class Theirs>
void compareInTurns(benchmark::State& state, Ours&& ours, Theirs&& theirs) {
    compareInTurns(
        state, [](auto& side) { return processorSeconds(side); }, ours, theirs, [](std::size_t) {});
}
