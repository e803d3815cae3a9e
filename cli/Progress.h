// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

namespace cli {

// The text of the progress bar: "[#####     ]  50 %  0:12 left". `done` is in 0..1; the remaining
// time is shown once `done` is above 0.
std::string progressText(double done, std::chrono::duration<double> elapsed);

// A progress bar in one line of a terminal, redrawn in place at most ten times a second.
class Progress {
public:
    // Draws nothing if `visible` is false.
    Progress(std::ostream& stream, bool visible);
    // Clears the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // `current` of `total` steps are done. One thread at a time.
    void update(int current, int total);

private:
    using Clock = std::chrono::steady_clock;

    std::ostream& stream_;
    bool visible_;
    Clock::time_point start_;
    Clock::time_point nextDraw_;
    std::size_t drawn_ = 0;  // characters on the line
};

// Whether standard error is a terminal.
bool errorStreamIsTerminal();

}  // namespace cli
