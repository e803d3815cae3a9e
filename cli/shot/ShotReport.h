// SPDX-License-Identifier: Apache-2.0
#pragma once
// What is said while the frames of a shot are rendered. Any thread may call it.

#include <chrono>
#include <iosfwd>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/Progress.h"
#include "pictures/Messages.h"

namespace cli {

// "[####    ] 23 of 100 frames, 1.2 a second, 1:05 left". `done` frames of `count` are done,
// `seconds` after the first began.
std::string shotProgressText(double done, std::size_t count, double seconds);

class ShotReport {
public:
    // One bar on a terminal, otherwise one line a frame; only errors if quiet. A warning is an
    // error if strict.
    ShotReport(const Invocation& invocation, std::size_t count, bool quiet, bool strict);

    // A frame is this far, 0 to 1.
    void update(int frame, double share);
    // It is written to `file`, or there is another line about it.
    void done(int frame, double seconds, const std::string& file);
    void skipped(int frame, const std::string& file);
    void failed(int frame, const std::string& why);
    // A warning of a frame: said the first time, and counted afterwards. Texts that differ in
    // numbers only are the same.
    void warn(int frame, const std::string& text);
    // A note: said if it is of the first frame that has any, since all frames have the same.
    void note(int frame, const std::string& text);

    // Ends with what happened often, and the frames that failed; returns whether none did.
    bool finish();

    bool quiet() const { return quiet_; }
    bool strict() const { return strict_; }

private:
    void line(int frame, const std::string& text);
    void say(const std::string& text);
    double secondsSinceStart() const;

    struct Repeated {
        std::string text;  // of the first time
        int times = 0;
    };

    std::mutex mutex_;
    std::ostream& out_;
    std::ostream& err_;
    const std::size_t count_;
    const bool quiet_;
    const bool strict_;
    const bool bar_;
    TerminalLine line_;
    const std::chrono::steady_clock::time_point start_;
    std::map<int, double> underWay_;  // share by frame
    std::size_t rendered_ = 0;
    std::size_t skipped_ = 0;
    std::vector<int> failed_;
    std::map<std::string, Repeated> warnings_;  // by the text without numbers
    std::optional<int> noted_;                  // the frame whose notes are said
};

// The messages of one frame, as they arrive at the report.
class FrameMessages : public pictures::Messages {
public:
    FrameMessages(ShotReport& report, int frame, std::ostream& stream)
        : Messages(stream, report.quiet(), report.strict()), report_(report), frame_(frame) {}
    void note(std::string_view text) override { report_.note(frame_, std::string(text)); }
    void warn(std::string_view text) override;

private:
    ShotReport& report_;
    int frame_;
};

// The progress of one frame.
class FrameProgress : public Progress {
public:
    FrameProgress(ShotReport& report, int frame) : report_(report), frame_(frame) {}
    void begin(double from, double to) override {
        from_ = from;
        to_ = to;
    }
    void update(double share) override { report_.update(frame_, from_ + share * (to_ - from_)); }

private:
    ShotReport& report_;
    int frame_;
    double from_ = 0.0;
    double to_ = 1.0;
};

}  // namespace cli
