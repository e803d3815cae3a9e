#include "cli/CompareCommand.h"

#include <cstdio>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Comparison.h"
#include "pictures/Interrupt.h"
#include "pictures/PictureReader.h"
#include "pictures/WorldPixels.h"

namespace cli {
namespace {

constexpr const char* kChannelNames[] = {"red", "green", "blue", "alpha"};

std::string placeText(const pictures::Difference& difference) {
    return std::string(kChannelNames[difference.channel]) + " at " + std::to_string(difference.x) +
           "," + std::to_string(difference.y);
}

}  // namespace

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
    pictures::Picture a = pictures::readPicture(m_first, pictures::Extent::Everything);
    pictures::Picture b = pictures::readPicture(m_second, pictures::Extent::Everything);
    if (a.hasAlpha && b.hasAlpha && a.associated != b.associated) {
        pictures::associate(a.associated ? b.pixels : a.pixels);
    }
    pictures::throwIfInterrupted();

    const pictures::Difference difference = pictures::comparePictures(a, b);
    char text[160];
    std::snprintf(text, sizeof text, "largest difference %.9g (%s), mean %.9g", difference.largest,
                  placeText(difference).c_str(), difference.mean);
    m_invocation.out << text << '\n';
    return difference.largest > tolerance ? kExitFailure : kExitSuccess;
}

}  // namespace cli
