// SPDX-License-Identifier: Apache-2.0
#include "cli/Progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace cli {
namespace {

constexpr int kBarWidth = 40;  // characters
// What must be done of the bar, and for how long, before the time left is estimated: the first
// tiles of a frame also pay for memory that is touched for the first time.
constexpr double kLeastForEstimate = 0.04;
constexpr double kLeastSeconds = 1.0;

}  // namespace

std::string clockText(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    char text[32];
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

std::string barText(double done) {
    const double share = std::clamp(done, 0.0, 1.0);
    const auto filled = static_cast<std::size_t>(std::lround(share * kBarWidth));
    std::string text = "[";
    return text.append(filled, '#').append(kBarWidth - filled, ' ').append("]");
}

std::string progressText(double done, std::optional<double> left) {
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3d %%",
                  static_cast<int>(std::clamp(done, 0.0, 1.0) * 100.0));
    std::string text = barText(done) + percent;
    if (left) text += "  " + clockText(*left) + " left";
    return text;
}

void TerminalLine::draw(const std::function<std::string()>& text) {
    const auto now = std::chrono::steady_clock::now();
    if (!visible_ || now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    std::string line = text();
    const std::size_t length = line.size();
    if (length < drawn_) line.resize(drawn_, ' ');
    stream_ << '\r' << line << std::flush;
    drawn_ = length;
}

void TerminalLine::clear() {
    if (drawn_ > 0) stream_ << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
    drawn_ = 0;
}

void ProgressBar::begin(double from, double to) {
    from_ = from;
    to_ = to;
    first_.reset();
}

// Assumes that the rest of the bar is as fast as this stage since its first update.
std::optional<double> ProgressBar::secondsLeft(double share, Clock::time_point now) {
    if (!first_) {
        first_ = {share, now};
        return std::nullopt;
    }
    const double done = (share - first_->first) * (to_ - from_);
    const double seconds = std::chrono::duration<double>(now - first_->second).count();
    if (done < kLeastForEstimate || seconds < kLeastSeconds) return std::nullopt;
    return seconds / done * (1.0 - from_ - share * (to_ - from_));
}

void ProgressBar::update(double share) {
    const std::optional<double> left = secondsLeft(share, Clock::now());
    line_.draw([&] { return progressText(from_ + share * (to_ - from_), left); });
}

bool errorStreamIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace cli
