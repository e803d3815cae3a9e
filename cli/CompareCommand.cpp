// SPDX-License-Identifier: Apache-2.0
#include "cli/CompareCommand.h"

#include <cstdio>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Comparison.h"
#include "pictures/Interrupt.h"
#include "pictures/WorldPixels.h"
#include "pictures/files/PictureReader.h"

namespace cli {
namespace {

constexpr const char* kChannelNames[] = {"red", "green", "blue", "alpha"};

std::string placeText(const pictures::Difference& difference) {
    return std::string(kChannelNames[difference.channel]) + " at " + std::to_string(difference.x) +
           "," + std::to_string(difference.y);
}

}  // namespace

CompareCommand::CompareCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("compare",
                                 "Print how much two images differ; exit code 1 above a tolerance");
    app_->allow_extras();
    app_->footer(
        "Exit codes: 0 equal within the tolerance, 1 different, 2 could not compare (an image "
        "is unreadable or has another size, or the command line is wrong)");
    app_->add_option("A", first_, "image, or FILE:LAYER of a multi-layer EXR")->required();
    app_->add_option("B", second_, "image to compare it with")->required();
    app_->add_option("--tolerance", tolerance_,
                     "largest difference allowed per channel, integers as 0..1; default 0")
        ->type_name("T");
}

int CompareCommand::run() {
    const double tolerance = parseNumber("--tolerance", tolerance_);
    if (tolerance < 0.0) throw UsageError("--tolerance takes a number of at least 0");
    pictures::Picture a = pictures::readPicture(first_, pictures::Extent::kEverything);
    pictures::Picture b = pictures::readPicture(second_, pictures::Extent::kEverything);
    if (a.hasAlpha && b.hasAlpha && a.associated != b.associated) {
        pictures::associate(a.associated ? b.pixels : a.pixels, pictures::HiddenColour::kKept);
    }
    pictures::throwIfInterrupted();

    const pictures::Difference difference = pictures::comparePictures(a, b);
    char text[160];
    std::snprintf(text, sizeof text, "largest difference %.9g (%s), mean %.9g", difference.largest,
                  placeText(difference).c_str(), difference.mean);
    invocation_.out << text << '\n';
    return difference.largest > tolerance ? kExitDifferent : kExitSuccess;
}

}  // namespace cli
