// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/CheckCommand.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <system_error>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Interrupt.h"
#include "pictures/Text.h"
#include "pictures/depth/MapPlacement.h"
#include "pictures/files/PictureReader.h"
#include "shot/Frames.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr int kLargestSide = 1 << 20;

// What is wrong with the frames of a sequence.
class Checks {
public:
    Checks(std::optional<pictures::Size> size, bool quick) : size_(size), quick_(quick) {}

    // The file's fault, or nothing.
    std::string faultOf(const std::string& file) {
        std::error_code error;
        const std::uintmax_t bytes = fs::file_size(pictures::parseSourceName(file).file, error);
        if (error) return "missing";
        if (bytes == 0) return "empty";
        try {
            return sizeFault(sizeOf(file));
        } catch (const Failure& failure) {
            return std::string("unreadable: ") + failure.what();
        }
    }

private:
    pictures::Size sizeOf(const std::string& file) const {
        if (quick_) return displaySize(pictures::PictureFile(file).picture());
        return displaySize(pictures::readPicture(file, pictures::Extent::kEverything));
    }

    // The first frame decides if nobody says the size.
    std::string sizeFault(const pictures::Size& size) {
        if (!size_) size_ = size;
        if (size == *size_) return {};
        return pictures::sizeText(size) + " pixels instead of " + pictures::sizeText(*size_);
    }

    std::optional<pictures::Size> size_;
    const bool quick_;
};

std::vector<int> fromFirstToLast(const std::vector<int>& frames) {
    if (frames.empty()) return {};
    return shot::parseFrames(std::to_string(frames.front()) + "-" + std::to_string(frames.back()));
}

}  // namespace

CheckCommand::CheckCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ =
        parent.add_subcommand("check", "Check that the frames of a sequence are there and whole");
    app_->allow_extras();
    app_->footer("Exit codes: 0 all are, 1 some are missing, empty, unreadable or of another size");
    app_->add_option("FILES", files_, "images, with #### or %04d for the number")->required();
    app_->add_option("--frames", frames_,
                     "frames that have to be there, such as 1001-1100; default: from the first on "
                     "disk to the last")
        ->type_name("LIST");
    app_->add_option("--size", size_, "their size in pixels; default: that of the first")
        ->type_name("WxH");
    app_->add_flag("--quick", quick_, "read only the beginning of each file");
}

std::optional<pictures::Size> CheckCommand::wantedSize() const {
    if (size_.empty()) return std::nullopt;
    const pictures::Window window = parseSize("--size", size_, kLargestSide);
    return pictures::Size{window.width(), window.height()};
}

shot::FilePattern CheckCommand::pattern() const try {
    shot::FilePattern pattern(files_);
    if (pattern.hasNumber()) return pattern;
    throw UsageError(files_ + " is one file; put #### where the number of the frame belongs");
} catch (const std::invalid_argument& error) {
    throw UsageError(error.what());
}

std::vector<int> CheckCommand::wantedFrames(const shot::FilePattern& pattern) const try {
    std::vector<int> frames =
        frames_.empty() ? fromFirstToLast(pattern.framesOnDisk()) : shot::parseFrames(frames_);
    if (frames.empty()) throw Failure("there are no files " + files_ + "; check the name");
    return frames;
} catch (const std::invalid_argument& error) {
    throw UsageError(error.what());
}

int CheckCommand::run() {
    const std::optional<pictures::Size> size = wantedSize();
    const shot::FilePattern pattern = this->pattern();
    const std::vector<int> frames = wantedFrames(pattern);
    Checks checks(size, quick_);
    std::vector<int> faulty;
    for (const int frame : frames) {
        pictures::throwIfInterrupted();
        const std::string fault = checks.faultOf(pattern.name(frame));
        if (fault.empty()) continue;
        faulty.push_back(frame);
        invocation_.out << frame << "  " << pictures::oneLine(fault) << '\n';
    }
    invocation_.out << pictures::counted(frames.size(), "frame") << " checked, "
                    << (faulty.empty() ? "all whole" : "not whole: " + shot::framesText(faulty))
                    << '\n';
    return faulty.empty() ? kExitSuccess : kExitFailure;
}

}  // namespace cli
