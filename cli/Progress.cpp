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
// The share of the bar that must be done before the time left is estimated.
constexpr double kLeastForEstimate = 0.02;

std::string clockText(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    char text[32];
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

}  // namespace

std::string progressText(double done, std::optional<double> left) {
    const double share = std::clamp(done, 0.0, 1.0);
    const auto filled = static_cast<std::size_t>(std::lround(share * kBarWidth));
    std::string text = "[";
    text.append(filled, '#').append(kBarWidth - filled, ' ').append("]");
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3d %%", static_cast<int>(share * 100.0));
    text += percent;
    if (left) text += "  " + clockText(*left) + " left";
    return text;
}

Progress::Progress(std::ostream& stream, bool visible)
    : stream_(stream), visible_(visible), nextDraw_(Clock::now()) {}

Progress::~Progress() {
    finish();
}

void Progress::begin(double from, double to) {
    from_ = from;
    to_ = to;
    first_.reset();
}

// Assumes that the rest of the bar is as fast as this stage since its first update.
std::optional<double> Progress::secondsLeft(double share, Clock::time_point now) {
    if (!first_) {
        first_ = {share, now};
        return std::nullopt;
    }
    const double done = (share - first_->first) * (to_ - from_);
    if (done < kLeastForEstimate) return std::nullopt;
    const double seconds = std::chrono::duration<double>(now - first_->second).count();
    return seconds / done * (1.0 - from_ - share * (to_ - from_));
}

void Progress::update(double share) {
    const Clock::time_point now = Clock::now();
    const std::optional<double> left = secondsLeft(share, now);
    if (!visible_ || now < nextDraw_) return;
    nextDraw_ = now + std::chrono::milliseconds(100);

    std::string text = progressText(from_ + share * (to_ - from_), left);
    const std::size_t length = text.size();
    if (length < drawn_) text.resize(drawn_, ' ');
    stream_ << '\r' << text << std::flush;
    drawn_ = length;
}

void Progress::finish() {
    if (drawn_ > 0) stream_ << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
    drawn_ = 0;
}

bool errorStreamIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace cli
