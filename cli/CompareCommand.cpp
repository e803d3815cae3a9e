#include "cli/CompareCommand.h"

#include <cmath>
#include <cstdio>
#include <limits>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Interrupt.h"
#include "cli/Numbers.h"
#include "cli/PictureReader.h"
#include "cli/WorldPixels.h"

namespace cli {
namespace {

constexpr const char* kChannelNames[] = {"red", "green", "blue", "alpha"};

double distance(float a, float b) {
    if (a == b || (std::isnan(a) && std::isnan(b))) return 0.0;
    if (!std::isfinite(a) || !std::isfinite(b)) return std::numeric_limits<double>::infinity();
    return std::fabs(static_cast<double>(a) - static_cast<double>(b));
}

// The pixel at a place of the file's co-ordinates, or zeros outside.
const float* pixelAt(const Picture& picture, int x, int y) {
    static constexpr float kNothing[kChannels] = {};
    const Window& window = picture.window;
    if (x < window.left || x >= window.right || y < window.top || y >= window.bottom) {
        return kNothing;
    }
    return picture.pixel(static_cast<std::size_t>(y - window.top) *
                             static_cast<std::size_t>(window.width()) +
                         static_cast<std::size_t>(x - window.left));
}

void accumulate(Difference& difference, double& sum, double apart, int x, int y, int channel) {
    sum += apart;
    if (!(apart > difference.largest)) return;
    difference = {apart, 0.0, x, y, channel};
}

std::string placeText(const Difference& difference) {
    return std::string(kChannelNames[difference.channel]) + " at " + std::to_string(difference.x) +
           "," + std::to_string(difference.y);
}

}  // namespace

Difference comparePictures(const Picture& a, const Picture& b) {
    if (a.display.width() != b.display.width() || a.display.height() != b.display.height()) {
        throw Failure("the pictures differ in size: " + a.name + " has " +
                      std::to_string(a.display.width()) + "x" + std::to_string(a.display.height()) +
                      " pixels, " + b.name + " " + std::to_string(b.display.width()) + "x" +
                      std::to_string(b.display.height()));
    }
    Difference difference;
    double sum = 0.0;
    const Window both = enclosing(a.window, b.window);
    for (int y = both.top; y < both.bottom; ++y) {
        for (int x = both.left; x < both.right; ++x) {
            const float* first = pixelAt(a, x, y);
            const float* second = pixelAt(b, x, y);
            for (int c = 0; c < static_cast<int>(kChannels); ++c) {
                accumulate(difference, sum, distance(first[c], second[c]), x, y, c);
            }
        }
    }
    difference.mean = sum / (static_cast<double>(both.width()) * both.height() * kChannels);
    return difference;
}

CompareCommand::CompareCommand(CLI::App& parent, const Invocation& invocation)
    : m_invocation(invocation) {
    m_app = parent.add_subcommand(
        "compare", "Print how far two pictures are apart; exit code 1 above a tolerance");
    m_app->allow_extras();
    m_app->add_option("A", m_first, "picture, or FILE:LAYER")->required();
    m_app->add_option("B", m_second, "picture to compare it with")->required();
    m_app
        ->add_option("--tolerance", m_tolerance,
                     "largest difference that passes, as a share of 1; default 0")
        ->type_name("T");
}

int CompareCommand::run() {
    const double tolerance = parseNumber("--tolerance", m_tolerance);
    if (tolerance < 0.0) throw UsageError("--tolerance takes a number from 0 up");
    Picture a = readPicture(m_first, Extent::Everything);
    Picture b = readPicture(m_second, Extent::Everything);
    if (a.hasAlpha && b.hasAlpha && a.associated != b.associated) {
        associate(a.associated ? b.pixels : a.pixels);
    }
    throwIfInterrupted();

    const Difference difference = comparePictures(a, b);
    char text[160];
    std::snprintf(text, sizeof text, "largest difference %.9g (%s), mean %.9g", difference.largest,
                  placeText(difference).c_str(), difference.mean);
    m_invocation.out << text << '\n';
    return difference.largest > tolerance ? kExitFailure : kExitSuccess;
}

}  // namespace cli
