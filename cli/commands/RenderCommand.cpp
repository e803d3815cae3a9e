// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/RenderCommand.h"

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/render/RenderFiles.h"
#include "cli/render/RenderStats.h"
#include "cli/shot/ShotRender.h"
#include "pictures/files/PictureFormats.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

int parseBits(const std::string& text) {
    if (text == "8" || text == "16" || text == "32") return parseWhole("--bits", text, 8, 32);
    throw UsageError("--bits takes 8, 16 or 32, not \"" + text + "\"");
}

PF_RationalScale parseDownsample(const std::string& text) {
    const PF_RationalScale scale = parseRatio("--downsample", text);
    if (static_cast<A_u_long>(scale.num) <= scale.den) return scale;
    throw UsageError("--downsample takes a ratio of at most 1, such as 1/2, not \"" + text + "\"");
}

pictures::SampleType parseSampleType(const std::string& text) {
    using enum pictures::SampleType;
    constexpr Choice<pictures::SampleType> kTypes[] = {
        {"uint8", kUInt8}, {"uint16", kUInt16}, {"half", kHalf}, {"float", kFloat}};
    return parseChoice("--output-type", text, kTypes);
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& parent, const Invocation& invocation,
                             const headless::ParameterSet& controls)
    : invocation_(invocation), frameOptions_(controls) {
    app_ = parent.add_subcommand("render", "Blur an image");
    app_->allow_extras();
    frameOptions_.addTo(*app_,
                        "image to blur, FILE:LAYER of a multi-layer EXR, or - for standard input; "
                        "several frames with #### or %04d for the number");
    addFileOptions();
    shotOptions_.addTo(*app_);
    addExtentOptions();
    frameOptions_.addImageTo(*app_);
    addPixelOptions();
}

void RenderCommand::addFileOptions() {
    app_->add_option("-o,--output", output_,
                     "image to write; the suffix selects the format; - for standard output")
        ->type_name("FILE")
        ->required();
    app_->add_option("--output-format", outputFormat_,
                     "format for -o -: png, exr, ppm or another suffix; default png")
        ->type_name("SUFFIX");
}

void RenderCommand::addExtentOptions() {
    app_->option_defaults()->group("Extent of the image");
    app_->add_option("--region", region_,
                     "render only this part, in full-resolution pixels; default: the whole image")
        ->type_name("X,Y,W,H");
    app_->add_option(
            "--downsample", downsample_,
            "render at reduced resolution, such as 1/2 for a preview, at most 1; default 1/1")
        ->type_name("N/D");
    app_->add_flag("--keep-overscan", keepOverscan_,
                   "grow the image, in EXR its data window, by the blur's reach; needs "
                   "--edge-behavior off");
    app_->add_flag("--crop-to-display", cropToDisplay_,
                   "write only the display window of an EXR, not the pixels beyond it");
}

void RenderCommand::addPixelOptions() {
    app_->option_defaults()->group("Pixels");
    app_->add_option("--bits", bits_,
                     "bits per channel to render with: 8, 16 or 32; 8 and 16 truncate as the "
                     "application does; default 32")
        ->type_name("8|16|32");
    app_->add_option("--output-type", outputType_,
                     "channel type to write: uint8, uint16, half or float; default: that of the "
                     "input")
        ->type_name("uint8|uint16|half|float");
    app_->add_flag("--no-settings", noSettings_,
                   "don't write the settings into the image's metadata");
    app_->add_flag("--pass-through", passThrough_,
                   "carry over the other channels and layers of an EXR, unchanged");
    app_->option_defaults()->group("Process");
    app_->add_flag("--force", force_, "write the image even if it is known to be lost");
    app_->add_flag("--stats", stats_, "print the seconds of each step, threads and peak memory");
}

RenderExtent RenderCommand::extent(const fs::path& output) const {
    RenderExtent extent;
    extent.scale = parseDownsample(downsample_);
    if (!region_.empty()) extent.region = parseRegion("--region", region_);
    extent.keepOverscan = keepOverscan_;
    extent.cropToDisplay = cropToDisplay_ || !pictures::formatOf(output).windows;
    return extent;
}

RenderPlan RenderCommand::plan(const fs::path& output) const {
    RenderPlan plan = frameOptions_.plan();
    plan.extent = extent(output);
    if (!bits_.empty()) plan.bits = parseBits(bits_);
    plan.passThrough = passThrough_;
    if (!noSettings_) plan.settings = frameOptions_.presets().settings(settingsFolder());
    if (!outputType_.empty()) plan.outputType = parseSampleType(outputType_);
    plan.force = force_;
    plan.stats = stats_;
    return plan;
}

// Detects before a long render that its result couldn't be written.
void RenderCommand::checkOutput(const RenderPlan& plan, const fs::path& output) const {
    if (plan.outputType) pictures::requireType(pictures::formatOf(output), *plan.outputType);
    frameOptions_.checkOutput(output);
}

// Paths in the image's metadata are relative to it, or to the current folder on standard output.
fs::path RenderCommand::settingsFolder() const {
    return output_ == pictures::kStandardStream ? fs::path() : fs::path(output_).parent_path();
}

void RenderCommand::renderOne() const {
    shotOptions_.requireNone();
    const OutputFile output(output_, outputFormat_);
    const RenderPlan plan = this->plan(output.path());
    checkOutput(plan, output.path());
    pictures::Messages messages(invocation_.err, plan.quiet, plan.strict);
    std::ostream& lines = output.isStandardOutput() ? invocation_.err : invocation_.out;
    ProgressBar progress(invocation_.err, invocation_.terminal && !plan.quiet);
    RenderStats stats;
    RenderSession session(plan, frameOptions_.groups(), invocation_, messages);
    RenderJob(session,
              {.input = frameOptions_.input(),
               .output = &output,
               .frame = frameOptions_.presets().frame()},
              {.messages = messages, .lines = lines, .progress = progress, .stats = stats})
        .run();
    session.checkBooks(messages);
    output.finish(invocation_.out);
    progress.finish();
    if (plan.stats) stats.print(lines, session.host());
}

// The frames that are asked for; for a single image, that of a preset which an image held.
std::optional<std::vector<int>> RenderCommand::frames(const ShotFiles& files) const {
    if (auto frames = shotOptions_.frames()) return frames;
    const std::optional<int>& frame = frameOptions_.presets().frame();
    if (!files.inputPattern().hasNumber() && frame) return std::vector<int>{*frame};
    return std::nullopt;
}

int RenderCommand::render() {
    const ShotFiles files(frameOptions_.input(), output_, frameOptions_.effect().files());
    if (!files.isSequence() && !shotOptions_.given()) {
        renderOne();
        return kExitSuccess;
    }
    if (frameOptions_.input() == pictures::kStandardStream ||
        output_ == pictures::kStandardStream || !outputFormat_.empty()) {
        throw UsageError("- stands for one picture; several frames need the names of files");
    }
    const RenderPlan plan = this->plan(output_);
    if (plan.outputType) pictures::requireType(pictures::formatOf(output_), *plan.outputType);
    return renderShot({.plan = plan,
                       .render = frameOptions_.groups(),
                       .shot = shotOptions_,
                       .files = files,
                       .frames = frames(files)},
                      invocation_);
}

int RenderCommand::run() {
    frameOptions_.presets().load();
    try {
        const int code = render();
        frameOptions_.presets().save();
        return code;
    } catch (const UsageError& error) {
        frameOptions_.presets().rethrow(error);
    }
}

}  // namespace cli
