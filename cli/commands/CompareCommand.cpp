// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/CompareCommand.h"

#include <cstdio>
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Comparison.h"
#include "pictures/Interrupt.h"
#include "pictures/WorldPixels.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureReader.h"
#include "pictures/files/PictureWriter.h"

namespace cli {
namespace {

constexpr std::size_t kMostParts = 3;
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
    app_->add_option("--difference", difference_,
                     "write the difference of the colours to this image: as it is to an EXR, "
                     "otherwise with the largest as white")
        ->type_name("FILE");
    app_->add_flag("--json", json_, "print the result as JSON");
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
    const std::vector<pictures::DifferentPart> parts = pictures::mostDifferent(a, b, kMostParts);
    json_ ? printJson(difference, parts) : print(difference, parts);
    if (!difference_.empty()) writeDifference(a, b, difference.largest);
    return difference.largest > tolerance ? kExitDifferent : kExitSuccess;
}

void CompareCommand::print(const pictures::Difference& difference,
                           const std::vector<pictures::DifferentPart>& parts) const {
    char text[160];
    std::snprintf(text, sizeof text, "largest difference %.9g (%s), mean %.9g", difference.largest,
                  placeText(difference).c_str(), difference.mean);
    invocation_.out << text << '\n';
    for (const auto& [window, largest, mean] : parts) {
        std::snprintf(text, sizeof text, "  %dx%d pixels from %d,%d: largest %.4g, mean %.4g",
                      window.width(), window.height(), window.left, window.top, largest, mean);
        invocation_.out << text << '\n';
    }
}

void CompareCommand::printJson(const pictures::Difference& difference,
                               const std::vector<pictures::DifferentPart>& parts) const {
    nlohmann::ordered_json json = {{"largest", difference.largest},
                                   {"mean", difference.mean},
                                   {"x", difference.x},
                                   {"y", difference.y},
                                   {"channel", kChannelNames[difference.channel]}};
    json["parts"] = nlohmann::ordered_json::array();
    for (const auto& [window, largest, mean] : parts) {
        json["parts"].push_back({{"x", window.left},
                                 {"y", window.top},
                                 {"width", window.width()},
                                 {"height", window.height()},
                                 {"largest", largest},
                                 {"mean", mean}});
    }
    invocation_.out << json.dump(2) << '\n';
}

void CompareCommand::writeDifference(const pictures::Picture& a, const pictures::Picture& b,
                                     double largest) const {
    const bool exr = pictures::formatOf(difference_).windows;
    std::vector<float> values = pictures::differencePixels(a, b);
    const auto gain = static_cast<float>(exr || largest == 0.0 ? 1.0 : 1.0 / largest);
    for (float& value : values) value *= gain;
    const pictures::Window both = pictures::enclosing(a.window, b.window);
    OIIO::ImageSpec spec(both.width(), both.height(), 3,
                         exr ? OIIO::TypeDesc::FLOAT : OIIO::TypeDesc::UINT8);
    pictures::writeChannels(difference_, spec, values);
}

}  // namespace cli
