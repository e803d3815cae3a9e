// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

namespace cli {

// The text of the progress bar: "[#####     ]  50 %  0:12 left". `done` is in 0..1; `left` are
// seconds, shown if they are known.
std::string progressText(double done, std::optional<double> left);

// A progress bar in one line of a terminal, redrawn in place at most ten times a second. It covers
// several stages, one after the other.
class Progress {
public:
    // Draws nothing if `visible` is false.
    Progress(std::ostream& stream, bool visible);
    // Clears the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Begins the stage that takes the bar from one share to another, both in 0..1.
    void begin(double from, double to);
    // `share` of the stage is done, 0 to 1. One thread at a time.
    void update(double share);
    // Clears the line.
    void finish();

private:
    using Clock = std::chrono::steady_clock;

    std::optional<double> secondsLeft(double share, Clock::time_point now);

    std::ostream& stream_;
    bool visible_;
    double from_ = 0.0;
    double to_ = 1.0;
    // The first update of a stage: what precedes it, such as the kernels, says nothing about the
    // speed of the rest.
    std::optional<std::pair<double, Clock::time_point>> first_;
    Clock::time_point nextDraw_;
    std::size_t drawn_ = 0;  // characters on the line
};

// Whether standard error is a terminal.
bool errorStreamIsTerminal();

}  // namespace cli
