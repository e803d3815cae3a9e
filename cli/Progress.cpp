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

std::string clockText(double seconds) {
    const auto whole = static_cast<long long>(std::ceil(seconds));
    char text[32];
    std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60);
    return text;
}

}  // namespace

std::string progressText(double done, std::chrono::duration<double> elapsed) {
    const double share = std::clamp(done, 0.0, 1.0);
    const auto filled = static_cast<std::size_t>(std::lround(share * kBarWidth));
    std::string text = "[";
    text.append(filled, '#').append(kBarWidth - filled, ' ').append("]");
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3d %%", static_cast<int>(share * 100.0));
    text += percent;
    if (share > 0.0) text += "  " + clockText(elapsed.count() * (1.0 - share) / share) + " left";
    return text;
}

Progress::Progress(std::ostream& stream, bool visible)
    : stream_(stream), visible_(visible), start_(Clock::now()), nextDraw_(start_) {}

Progress::~Progress() {
    if (drawn_ > 0) stream_ << '\r' << std::string(drawn_, ' ') << '\r' << std::flush;
}

void Progress::update(int current, int total) {
    const Clock::time_point now = Clock::now();
    if (!visible_ || total <= 0 || now < nextDraw_) return;
    nextDraw_ = now + std::chrono::milliseconds(100);

    std::string text = progressText(static_cast<double>(current) / total, now - start_);
    const std::size_t length = text.size();
    if (length < drawn_) text.resize(drawn_, ' ');
    stream_ << '\r' << text << std::flush;
    drawn_ = length;
}

bool errorStreamIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace cli
