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
    : m_stream(stream), m_visible(visible), m_start(Clock::now()), m_nextDraw(m_start) {}

Progress::~Progress() {
    if (m_drawn > 0) m_stream << '\r' << std::string(m_drawn, ' ') << '\r' << std::flush;
}

void Progress::update(int current, int total) {
    const Clock::time_point now = Clock::now();
    if (!m_visible || total <= 0 || now < m_nextDraw) return;
    m_nextDraw = now + std::chrono::milliseconds(100);

    std::string text = progressText(static_cast<double>(current) / total, now - m_start);
    const std::size_t length = text.size();
    if (length < m_drawn) text.resize(m_drawn, ' ');
    m_stream << '\r' << text << std::flush;
    m_drawn = length;
}

bool errorStreamIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace cli
