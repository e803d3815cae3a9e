// SPDX-License-Identifier: Apache-2.0
#include "cli/RenderCommand.h"

#include <system_error>

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/RenderFiles.h"
#include "cli/RenderStats.h"
#include "cli/shot/ShotRender.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/PictureFormats.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr int kMostThreads = 1024;

int parseBits(const std::string& text) {
    if (text == "8" || text == "16" || text == "32") return parseWhole("--bits", text, 8, 32);
    throw UsageError("--bits takes 8, 16 or 32, not \"" + text + "\"");
}

PF_RationalScale parseDownsample(const std::string& text) {
    const PF_RationalScale scale = parseRatio("--downsample", text);
    if (static_cast<A_u_long>(scale.num) <= scale.den) return scale;
    throw UsageError("--downsample takes a ratio of at most 1, such as 1/2, not \"" + text + "\"");
}

// A ratio N/D or a decimal number.
double parseAspect(const std::string& text) {
    if (text.find('/') == std::string::npos) {
        const double aspect = parseNumber("--pixel-aspect", text);
        if (aspect > 0.0) return aspect;
        throw UsageError("--pixel-aspect takes a ratio above 0, not \"" + text + "\"");
    }
    const PF_RationalScale ratio = parseRatio("--pixel-aspect", text);
    return static_cast<double>(ratio.num) / ratio.den;
}

pictures::AlphaRule parseAlpha(const std::string& text) {
    if (text.empty()) return pictures::AlphaRule::kByFile;
    constexpr Choice<pictures::AlphaRule> kRules[] = {
        {"straight", pictures::AlphaRule::kStraight},
        {"associated", pictures::AlphaRule::kAssociated},
        {"ignore", pictures::AlphaRule::kIgnore}};
    return parseChoice("--alpha", text, kRules);
}

pictures::SampleType parseSampleType(const std::string& text) {
    using enum pictures::SampleType;
    constexpr Choice<pictures::SampleType> kTypes[] = {
        {"uint8", kUInt8}, {"uint16", kUInt16}, {"half", kHalf}, {"float", kFloat}};
    return parseChoice("--output-type", text, kTypes);
}

// The output must not be a file that is being read.
void requireOtherFile(const std::string& output, const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
        std::error_code ignored;
        if (fs::equivalent(pictures::parseSourceName(input).file, output, ignored)) {
            throw UsageError(output + " is an input and can't be the output; name another with -o");
        }
    }
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& parent, const Invocation& invocation,
                             const headless::ParameterSet& controls)
    : invocation_(invocation),
      effectOptions_(controls.infos()),
      presetOptions_(controls, effectOptions_) {
    app_ = parent.add_subcommand("render", "Blur an image");
    app_->allow_extras();
    addFileOptions();
    addExtentOptions();
    addPixelOptions();
    addProcessOptions();
    colourOptions_.addTo(*app_);
    cameraOptions_.addTo(*app_);
    effectOptions_.addTo(*app_);
    occlusionOptions_.addTo(*app_);
    shotOptions_.addTo(*app_);
    presetOptions_.addTo(*app_);
}

void RenderCommand::addFileOptions() {
    app_->add_option("INPUT", input_,
                     "image to blur, FILE:LAYER of a multi-layer EXR, or - for standard input; "
                     "several frames with #### or %04d for the number")
        ->required();
    app_->add_option("-o,--output", output_,
                     "image to write; the suffix selects the format; - for standard output")
        ->type_name("FILE")
        ->required();
    app_->add_option("--output-format", outputFormat_,
                     "format for -o -: png, exr, ppm or another suffix; default png")
        ->type_name("SUFFIX");
    app_->add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
}

void RenderCommand::addExtentOptions() {
    app_->add_option("--region", region_, "render only this part, in full-resolution pixels")
        ->type_name("X,Y,W,H");
    app_->add_option("--downsample", downsample_,
                     "render at reduced resolution, such as 1/2 for a preview")
        ->type_name("N/D");
    app_->add_flag("--keep-overscan", keepOverscan_,
                   "grow the image, in EXR its data window, by the blur's reach; needs "
                   "--edge-behavior off");
    app_->add_flag("--crop-to-display", cropToDisplay_,
                   "write only the display window of an EXR, not the pixels beyond it");
}

void RenderCommand::addPixelOptions() {
    app_->add_option("--bits", bits_,
                     "bits per channel to render with: 8, 16 or 32; 8 and 16 truncate as the "
                     "application does; default 32")
        ->type_name("BITS");
    app_->add_option("--output-type", outputType_,
                     "channel type to write: uint8, uint16, half or float; default: that of the "
                     "input")
        ->type_name("TYPE");
    app_->add_option("--alpha", alpha_,
                     "how the input's colours relate to alpha: straight, associated (multiplied "
                     "by it) or ignore; default: as the file says")
        ->type_name("KIND");
    app_->add_option("--pixel-aspect", pixelAspect_,
                     "pixel width relative to height; default: that of the input")
        ->type_name("N/D");
    app_->add_flag("--no-settings", noSettings_,
                   "don't write the settings into the image's metadata");
    app_->add_flag("--pass-through", passThrough_,
                   "carry over the other channels and layers of an EXR, unchanged");
}

void RenderCommand::addProcessOptions() {
    app_->add_option("--threads", threads_, "threads to render with; default: one per processor")
        ->type_name("N");
    app_->add_option("--memory-limit", memoryLimit_,
                     "host memory that the effect may use, such as 900M")
        ->type_name("BYTES");
    app_->add_flag("--quiet", quiet_, "print only errors");
    app_->add_flag("--force", force_, "write the image even if it is known to be lost");
    app_->add_flag("--strict", strict_, "treat every warning as an error, and write no image");
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

headless::HostOptions RenderCommand::hostOptions() const {
    headless::HostOptions options;
    if (!threads_.empty()) options.threads = parseWhole("--threads", threads_, 1, kMostThreads);
    if (!memoryLimit_.empty()) options.memoryLimit = parseBytes("--memory-limit", memoryLimit_);
    return options;
}

RenderPlan RenderCommand::plan(const fs::path& output) const {
    RenderPlan plan{.input = input_, .bundle = bundle_, .extent = extent(output)};
    if (!bits_.empty()) plan.bits = parseBits(bits_);
    plan.alpha = parseAlpha(alpha_);
    plan.passThrough = passThrough_;
    if (!noSettings_) plan.settings = presetOptions_.settings(settingsFolder());
    if (!outputType_.empty()) plan.outputType = parseSampleType(outputType_);
    if (!pixelAspect_.empty()) plan.pixelAspect = parseAspect(pixelAspect_);
    plan.host = hostOptions();
    plan.quiet = quiet_;
    plan.strict = strict_;
    plan.force = force_;
    plan.stats = stats_;
    return plan;
}

// Detects before a long render that its result couldn't be written.
void RenderCommand::checkOutput(const RenderPlan& plan, const fs::path& output) const {
    if (plan.outputType) pictures::requireType(pictures::formatOf(output), *plan.outputType);
    std::vector<std::string> inputs = effectOptions_.files();
    inputs.push_back(input_);
    presetOptions_.checkSaved(inputs, output.string());
    if (!presetOptions_.file().empty()) inputs.push_back(presetOptions_.file());
    requireOtherFile(output.string(), inputs);
    pictures::requireWritable(output);
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
    RenderSession session(plan, options(), invocation_, messages);
    RenderJob(session, {.input = input_, .output = &output, .frame = presetOptions_.frame()},
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
    const std::optional<int>& frame = presetOptions_.frame();
    if (!files.inputPattern().hasNumber() && frame) return std::vector<int>{*frame};
    return std::nullopt;
}

int RenderCommand::render() {
    const ShotFiles files(input_, output_, effectOptions_.files());
    if (!files.isSequence() && !shotOptions_.given()) {
        renderOne();
        return kExitSuccess;
    }
    if (input_ == pictures::kStandardStream || output_ == pictures::kStandardStream ||
        !outputFormat_.empty()) {
        throw UsageError("- stands for one picture; several frames need the names of files");
    }
    const RenderPlan plan = this->plan(output_);
    if (plan.outputType) pictures::requireType(pictures::formatOf(output_), *plan.outputType);
    return renderShot({.plan = plan,
                       .render = options(),
                       .shot = shotOptions_,
                       .files = files,
                       .frames = frames(files)},
                      invocation_);
}

int RenderCommand::run() {
    presetOptions_.load();
    try {
        const int code = render();
        presetOptions_.save();
        return code;
    } catch (const UsageError& error) {
        presetOptions_.rethrow(error);
    }
}

}  // namespace cli
