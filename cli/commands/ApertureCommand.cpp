// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/ApertureCommand.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Interrupt.h"
#include "pictures/Text.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureWriter.h"
#include "shot/Nearest.h"

namespace cli {
namespace {

using apertures::Kind;
using apertures::Option;

constexpr int kLargestTile = 1024;  // of the sheet with all kinds

// What the option accepts: "a number from 0 to 0.95".
std::string acceptedRange(const Option& option) {
    std::ostringstream text;  // numberText() has only six digits, too few for a seed
    text << (option.whole ? "a whole number from " : "a number from ") << std::setprecision(10)
         << option.least << " to " << option.most;
    return text.str();
}

std::string describe(const Option& option) {
    return option.help + ", " + acceptedRange(option) + ", default " +
           pictures::numberText(option.fallback);
}

// All kinds with their options, as --list prints them.
std::string describeKinds() {
    std::ostringstream text;
    for (const Kind& kind : apertures::kinds()) {
        text << std::left << std::setw(12) << kind.name << kind.help << '\n';
        for (const Option& option : kind.options) {
            text << "    " << std::setw(16) << "--" + option.name << describe(option) << '\n';
        }
    }
    return text.str();
}

std::string joined(const std::vector<std::string>& words, const char* between = ", ") {
    std::string list;
    for (const std::string& word : words) list += (list.empty() ? "" : between) + word;
    return list;
}

std::vector<std::string> namesOfKinds() {
    std::vector<std::string> names;
    for (const Kind& kind : apertures::kinds()) names.push_back(kind.name);
    return names;
}

const Kind& requireKind(const std::string& name) {
    if (name.empty()) {
        throw UsageError("KIND is required, one of " + joined(namesOfKinds()) + "; or give --list");
    }
    for (const Kind& kind : apertures::kinds()) {
        if (kind.name == name) return kind;
    }
    throw UsageError("there is no aperture \"" + name + "\"; take one of " +
                     joined(namesOfKinds()) + shot::suggestion(name, namesOfKinds()));
}

bool has(const Kind& kind, const std::string& option) {
    return std::any_of(kind.options.begin(), kind.options.end(),
                       [&](const Option& own) { return own.name == option; });
}

[[noreturn]] void refuseOption(const Kind& kind, const std::string& option) {
    std::vector<std::string> own;
    own.reserve(kind.options.size());
    for (const Option& each : kind.options) own.push_back("--" + each.name);
    throw UsageError(kind.name + " has no --" + option + "; its options are " + joined(own));
}

double parseOption(const Option& option, const std::string& text) {
    const std::string refusal =
        "--" + option.name + " takes " + acceptedRange(option) + ", not \"" + text + "\"";
    double value = 0.0;
    try {
        value = parseNumber("", text);
    } catch (const UsageError&) {
        throw UsageError(refusal);
    }
    const bool inRange = value >= option.least && value <= option.most;
    if (!inRange || (option.whole && value != std::floor(value))) throw UsageError(refusal);
    return value;
}

int bitsOf(pictures::SampleType type) {
    if (type == pictures::SampleType::kUInt8) return 8;
    return type == pictures::SampleType::kFloat ? 32 : 16;
}

OIIO::TypeDesc libraryType(pictures::SampleType type) {
    switch (type) {
        case pictures::SampleType::kUInt8:
            return OIIO::TypeDesc::UINT8;
        case pictures::SampleType::kUInt16:
            return OIIO::TypeDesc::UINT16;
        case pictures::SampleType::kHalf:
            return OIIO::TypeDesc::HALF;
        default:
            return OIIO::TypeDesc::FLOAT;
    }
}

// The format's type with as many bits as --bits says, otherwise its widest.
pictures::SampleType chooseType(const pictures::PictureFormat& format, const std::string& bits) {
    if (bits.empty()) return format.types.back();
    std::vector<std::string> held;
    for (const pictures::SampleType type : format.types) {
        held.push_back(std::to_string(bitsOf(type)));
        if (held.back() == bits) return type;
    }
    throw UsageError("--bits takes " + joined(held) + " for " + format.title + ", not \"" + bits +
                     "\"");
}

// Writes one channel, in all three colours where the format has no grey. Throws after Control-C.
void write(const std::string& file, const std::string& bits, int width, int height,
           std::vector<float> values) {
    pictures::throwIfInterrupted();
    const pictures::PictureFormat& format = pictures::formatOf(file);
    OIIO::ImageSpec imageSpec(width, height, format.grey ? 1 : 3,
                              libraryType(chooseType(format, bits)));
    if (format.grey) {
        imageSpec.channelnames = {"Y"};
    } else {
        std::vector<float> colours;
        for (const float value : values) colours.insert(colours.end(), 3, value);
        values = std::move(colours);
    }
    // Otherwise encoders write the current time, and no two runs produce the same file.
    imageSpec.attribute("DateTime", "2000:01:01 00:00:00");
    pictures::writeChannels(file, imageSpec, values);
}

}  // namespace

ApertureCommand::ApertureCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("aperture", "Draw an aperture for --custom-blur-shape");
    app_->allow_extras();
    app_->add_option("KIND", kind_, "one of " + joined(namesOfKinds()))
        ->type_name(joined(namesOfKinds(), "|"));
    app_->add_option("-o,--output", output_, "image to write; the suffix selects the format")
        ->type_name("FILE");
    app_->add_flag("--list", list_,
                   "print all kinds with their options; with -o, draw all on one sheet");
    app_->add_option(
            "--size", size_,
            "width and height in pixels, 16 to 4096, with --list of each kind; default 256")
        ->type_name("PIXELS");
    app_->add_option("--bits", bits_, "bits per pixel; default: the most that the format holds")
        ->type_name("BITS");
    addOptionsOfKinds();
    app_->footer("Kinds:\n" + describeKinds() + "\n" + parent.get_footer());
}

// One option for all kinds that have one of this name.
void ApertureCommand::addOptionsOfKinds() {
    // For each option what it is, and of which kinds.
    std::map<std::string, std::map<std::string, std::vector<std::string>>> meanings;
    for (const Kind& kind : apertures::kinds()) {
        for (const Option& option : kind.options) {
            meanings[option.name][describe(option)].push_back(kind.name);
        }
    }
    for (const auto& [option, owners] : meanings) {
        std::string help;
        for (const auto& [meaning, names] : owners) {
            help += (help.empty() ? "" : "; ") + joined(names) + ": " + meaning;
        }
        app_->add_option("--" + option, options_[option], help)
            ->type_name("NUMBER")
            ->group("Options of the kinds");
    }
}

bool ApertureCommand::given(const std::string& option) const {
    return app_->count("--" + option) > 0;
}

apertures::Values ApertureCommand::valuesOf(const Kind& kind) const {
    for (const auto& [option, text] : options_) {
        if (given(option) && !has(kind, option)) refuseOption(kind, option);
    }
    apertures::Values values = apertures::defaultsOf(kind);
    for (const Option& option : kind.options) {
        if (given(option.name)) {
            values[option.name] = parseOption(option, options_.at(option.name));
        }
    }
    return values;
}

void ApertureCommand::requireNoOptionsOfKinds() const {
    if (!kind_.empty()) throw UsageError("--list draws all kinds; leave out " + kind_);
    for (const auto& [option, text] : options_) {
        if (given(option)) {
            throw UsageError("--list draws each kind with its defaults; leave out --" + option);
        }
    }
}

void ApertureCommand::drawOne() const {
    const Kind& kind = requireKind(kind_);
    const apertures::Values values = valuesOf(kind);
    const int size = parseWhole("--size", size_, apertures::kLeastSize, apertures::kLargestSize);
    if (output_.empty()) throw UsageError("--output is required");
    chooseType(pictures::formatOf(output_), bits_);
    pictures::requireWritable(output_);
    write(output_, bits_, size, size,
          apertures::draw(kind, values, size, pictures::interruptFlag()));
}

void ApertureCommand::drawAll() const {
    const int size = parseWhole("--size", size_, apertures::kLeastSize, kLargestTile);
    chooseType(pictures::formatOf(output_), bits_);
    pictures::requireWritable(output_);
    apertures::Sheet sheet = apertures::drawSheet(size, pictures::interruptFlag());
    write(output_, bits_, sheet.width, sheet.height, std::move(sheet.pixels));
}

int ApertureCommand::run() {
    if (!list_) {
        drawOne();
        return kExitSuccess;
    }
    requireNoOptionsOfKinds();
    if (!output_.empty()) drawAll();
    invocation_.out << describeKinds();
    return kExitSuccess;
}

}  // namespace cli
