// SPDX-License-Identifier: Apache-2.0
#include "cli/shot/ShotOptions.h"

#include <limits>
#include <stdexcept>

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "shot/Frames.h"

namespace cli {
namespace {

constexpr const char* kGroup = "Sequences";
constexpr int kMostJobs = 256;

}  // namespace

void ShotOptions::addTo(CLI::App& app) {
    app.add_option("--frames", frames_,
                   "frames to render, such as 1001-1100, 1001-1100x2 or 1,5,9; default: all that "
                   "INPUT, with #### or %04d for the number, has files of")
        ->type_name("LIST")
        ->group(kGroup);
    app.add_option("--jobs", jobs_,
                   "frames at a time, 1 to " + std::to_string(kMostJobs) +
                       "; default: one per processor, as far as the memory goes")
        ->type_name("N")
        ->group(kGroup);
    app.add_option("--missing", missing_,
                   "what to do where an input has no file for a frame: error; skip; hold, take "
                   "that of the frame before; or black, write a black picture; default error")
        ->type_name("error|skip|hold|black")
        ->group(kGroup);
    app.add_option("--survey", survey_,
                   "which depth maps tell the range, the focus of --focus-at and the slabs of "
                   "--occlusion: shot, all on disk together (the focus: the first); each, "
                   "every frame its own; or the number of a frame; default shot")
        ->type_name("FRAMES")
        ->group(kGroup);
    app.add_flag("--skip-existing", skipExisting_, "leave out frames whose output is there already")
        ->group(kGroup);
    app.add_flag("--keep-going", keepGoing_, "render on after a frame that failed")->group(kGroup);
}

std::optional<std::vector<int>> ShotOptions::frames() const {
    if (frames_.empty()) return std::nullopt;
    try {
        return shot::parseFrames(frames_);
    } catch (const std::invalid_argument& error) {
        throw UsageError(std::string("--frames: ") + error.what());
    }
}

std::optional<int> ShotOptions::jobs() const {
    if (jobs_.empty()) return std::nullopt;
    return parseWhole("--jobs", jobs_, 1, kMostJobs);
}

MissingRule ShotOptions::missing() const {
    if (missing_.empty()) return MissingRule::kError;
    constexpr Choice<MissingRule> kRules[] = {{"error", MissingRule::kError},
                                              {"skip", MissingRule::kSkip},
                                              {"hold", MissingRule::kHold},
                                              {"black", MissingRule::kBlack}};
    return parseChoice("--missing", missing_, kRules);
}

Survey ShotOptions::survey() const {
    if (survey_.empty() || survey_ == "shot") return {};
    if (survey_ == "each") return {.each = true, .frame = std::nullopt};
    if (survey_.find_first_not_of("-0123456789") == std::string::npos) {
        constexpr int kMost = 999'999'999;
        return {.each = false, .frame = parseWhole("--survey", survey_, -kMost, kMost)};
    }
    throw UsageError("--survey takes shot, each or the number of a frame, not \"" + survey_ + "\"");
}

void ShotOptions::requireNone() const {
    if (jobs_.empty() && missing_.empty() && !skipExisting_ && !keepGoing_) return;
    throw UsageError(
        "--jobs, --missing, --skip-existing and --keep-going are for several frames; name them "
        "with #### in INPUT, or with --frames");
}

}  // namespace cli
