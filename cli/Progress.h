// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

namespace cli {

// Seconds, rounded up, as "1:05".
std::string clockText(double seconds);

// The bar alone: "[#####     ]" for 0.5.
std::string barText(double done);

// The text of the progress bar: "[#####     ]  50 %  0:12 left". `done` is in 0..1; `left` are
// seconds, shown if they are known.
std::string progressText(double done, std::optional<double> left);

// Is told how far a picture is, in several stages, one after the other.
class Progress {
public:
    Progress() = default;
    virtual ~Progress() = default;
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Begins the stage that leads from one share of the whole to another, both in 0..1.
    virtual void begin(double from, double to) = 0;
    // `share` of the stage is done, 0 to 1. One thread at a time.
    virtual void update(double share) = 0;
};

// One line of a terminal, redrawn in place at most ten times a second.
class TerminalLine {
public:
    // Draws nothing if `visible` is false.
    TerminalLine(std::ostream& stream, bool visible) : stream_(stream), visible_(visible) {}
    // Clears the line.
    ~TerminalLine() { clear(); }
    TerminalLine(const TerminalLine&) = delete;
    TerminalLine& operator=(const TerminalLine&) = delete;

    // Calls `text` for the new line if it is time for one.
    void draw(const std::function<std::string()>& text);
    void clear();

private:
    std::ostream& stream_;
    bool visible_;
    std::chrono::steady_clock::time_point next_{};
    std::size_t drawn_ = 0;  // characters on the line
};

// A progress bar for one picture.
class ProgressBar : public Progress {
public:
    // Draws nothing if `visible` is false.
    ProgressBar(std::ostream& stream, bool visible) : line_(stream, visible) {}

    void begin(double from, double to) override;
    void update(double share) override;
    // Clears the line.
    void finish() { line_.clear(); }

private:
    using Clock = std::chrono::steady_clock;

    std::optional<double> secondsLeft(double share, Clock::time_point now);

    TerminalLine line_;
    double from_ = 0.0;
    double to_ = 1.0;
    // The first update of a stage: what precedes it, such as the kernels, says nothing about the
    // speed of the rest.
    std::optional<std::pair<double, Clock::time_point>> first_;
};

// Whether standard error is a terminal.
bool errorStreamIsTerminal();

}  // namespace cli
