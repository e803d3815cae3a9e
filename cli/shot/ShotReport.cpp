// SPDX-License-Identifier: Apache-2.0
#include "cli/shot/ShotReport.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "cli/Errors.h"
#include "pictures/Text.h"
#include "shot/Frames.h"

namespace cli {
namespace {

constexpr double kLeastSeconds = 1.0;  // before a speed is told
constexpr double kLeastFrames = 0.05;

std::string withoutNumbers(const std::string& text) {
    std::string rest;
    for (const char c : text) {
        if (c < '0' || c > '9') rest += c;
    }
    return rest;
}

std::string fixed(const char* form, double value) {
    char text[64];
    std::snprintf(text, sizeof text, form, value);
    return text;
}

std::string frames(std::size_t count) {
    return pictures::counted(count, "frame");
}

}  // namespace

std::string shotProgressText(double done, std::size_t count, double seconds) {
    const auto all = static_cast<double>(count);
    std::string text = barText(all > 0.0 ? done / all : 1.0) + " " +
                       std::to_string(static_cast<std::size_t>(done)) + " of " + frames(count);
    if (seconds < kLeastSeconds || done < kLeastFrames) return text;
    return text + ", " + fixed("%.2g", done / seconds) + " a second, " +
           clockText((all - done) / done * seconds) + " left";
}

ShotReport::ShotReport(const Invocation& invocation, std::size_t count, bool quiet, bool strict)
    : out_(invocation.out),
      err_(invocation.err),
      count_(count),
      quiet_(quiet),
      strict_(strict),
      bar_(invocation.terminal && !quiet),
      line_(invocation.err, bar_),
      start_(std::chrono::steady_clock::now()) {}

double ShotReport::secondsSinceStart() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void ShotReport::update(int frame, double share) {
    const std::lock_guard lock(mutex_);
    underWay_[frame] = share;
    line_.draw([&] {
        double done = static_cast<double>(rendered_ + skipped_ + failed_.size());
        for (const auto& [number, part] : underWay_) done += part;
        return shotProgressText(done, count_, secondsSinceStart());
    });
}

void ShotReport::line(int frame, const std::string& text) {
    underWay_.erase(frame);
    if (quiet_ || bar_) return;
    out_ << frame << "  " << text << std::endl;  // a farm's log is read while it grows
}

void ShotReport::say(const std::string& text) {
    line_.clear();
    err_ << "orbel: " << pictures::oneLine(text) << std::endl;
}

void ShotReport::done(int frame, double seconds, const std::string& file) {
    const std::lock_guard lock(mutex_);
    ++rendered_;
    line(frame, fixed("%.2f s  ", seconds) + file);
}

void ShotReport::skipped(int frame, const std::string& file) {
    const std::lock_guard lock(mutex_);
    ++skipped_;
    line(frame, "is there  " + file);
}

void ShotReport::failed(int frame, const std::string& why) {
    const std::lock_guard lock(mutex_);
    underWay_.erase(frame);
    failed_.push_back(frame);
    say("frame " + std::to_string(frame) + ": " + why);
}

void ShotReport::warn(int frame, const std::string& text) {
    const std::lock_guard lock(mutex_);
    Repeated& warning = warnings_[withoutNumbers(text)];
    if (++warning.times > 1 || quiet_) return;
    warning.text = text;
    say("warning: frame " + std::to_string(frame) + ": " + text);
}

void ShotReport::note(int frame, const std::string& text) {
    const std::lock_guard lock(mutex_);
    if (!noted_) noted_ = frame;
    if (!quiet_ && *noted_ == frame) say(text);
}

bool ShotReport::finish() {
    const std::lock_guard lock(mutex_);
    line_.clear();
    if (!quiet_) {
        for (const auto& [key, warning] : warnings_) {
            if (warning.times < 2) continue;
            say("warning, in " + frames(static_cast<std::size_t>(warning.times)) +
                ", the first of which: " + warning.text);
        }
        out_ << frames(rendered_) << " rendered"
             << (skipped_ > 0 ? ", " + std::to_string(skipped_) + " were there" : "") << ", in "
             << fixed("%.1f s", secondsSinceStart()) << std::endl;
    }
    if (failed_.empty()) return true;
    std::ranges::sort(failed_);
    say(frames(failed_.size()) + " failed: " + shot::framesText(failed_));
    return false;
}

void FrameMessages::warn(std::string_view text) {
    if (report_.strict()) {
        throw Failure(std::string(text) + " (an error because of --strict)");
    }
    report_.warn(frame_, std::string(text));
}

}  // namespace cli
