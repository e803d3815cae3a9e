// SPDX-License-Identifier: Apache-2.0
#include "cli/RenderCommand.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <system_error>

#include "cli/Errors.h"
#include "cli/ExposureCheck.h"
#include "cli/Numbers.h"
#include "cli/OutsideNotes.h"
#include "cli/OverscanLayer.h"
#include "cli/PixelAspect.h"
#include "cli/Progress.h"
#include "cli/RenderFiles.h"
#include "cli/RenderStats.h"
#include "cli/SourceReport.h"
#include "pictures/AtomicFile.h"
#include "pictures/Interrupt.h"
#include "pictures/Messages.h"
#include "pictures/PictureFormats.h"
#include "pictures/PictureReader.h"
#include "pictures/PictureWriter.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr int kMostThreads = 1024;
// Of the progress bar: most of the time goes into the blur.
constexpr double kShareOfReading = 0.08;
constexpr double kShareOfWriting = 0.05;

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
    if (text == "straight") return pictures::AlphaRule::kStraight;
    if (text == "associated") return pictures::AlphaRule::kAssociated;
    if (text == "ignore") return pictures::AlphaRule::kIgnore;
    throw UsageError("--alpha takes straight, associated or ignore, not \"" + text + "\"");
}

pictures::SampleType parseSampleType(const std::string& text) {
    using enum pictures::SampleType;
    for (const auto& [name, type] :
         {std::pair{"uint8", kUInt8}, {"uint16", kUInt16}, {"half", kHalf}, {"float", kFloat}}) {
        if (text == name) return type;
    }
    throw UsageError("--output-type takes uint8, uint16, half or float, not \"" + text + "\"");
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

void tellWhetherItGrows(const headless::ParameterSet& parameters, pictures::Messages& messages) {
    if (parameters.value(parameters.find("Edge Behavior")) == 0.0) return;
    messages.note(
        "--keep-overscan has no effect while edge pixels are repeated; add --edge-behavior off");
}

// The channels to carry over, if the user wants it. Throws Failure if the result's pixels aren't
// those of the input's data window.
std::unique_ptr<pictures::PassThrough> otherChannels(const fs::path& output, const RenderPlan& plan,
                                                     const pictures::SourceImage& source,
                                                     const PF_LRect& result,
                                                     pictures::Messages& messages) {
    if (!plan.passThrough) return nullptr;
    const pictures::Window data = source.file().dataWindow();
    const bool sameScale = headless::reducedSize(data.width(), plan.extent.scale) == data.width();
    if (!pictures::formatOf(output).windows || source.picture().turned || !sameScale ||
        resultWindow(result, source.picture(), plan.extent.scale) != data) {
        throw Failure(
            "--pass-through needs EXR files with the same data window; leave out --region, "
            "--downsample, --keep-overscan and --crop-to-display");
    }
    auto others = std::make_unique<pictures::PassThrough>(source.file().file(),
                                                          source.file().otherChannels(), data);
    tellLeftOut(source.picture().name, others->leftOut(), messages);
    return others;
}

double scaleOf(const RenderPlan& plan) {
    return static_cast<double>(plan.extent.scale.num) / plan.extent.scale.den;
}

std::string ofEffect(const headless::FrameResult& result) {
    return result.message.empty() ? "" : " (" + result.message + ")";
}

// Throws unless the frame was rendered.
void requireRendered(const headless::FrameResult& result) {
    if (result.status == PF_Interrupt_CANCEL) throw Interrupted{};
    pictures::throwIfInterrupted();
    if (result.status == PF_Err_OUT_OF_MEMORY) {
        throw Failure("out of memory" + ofEffect(result) +
                      "; try --downsample 1/2, a smaller --blur-radius or --resolution");
    }
    if (result.status != PF_Err_NONE) {
        throw Failure("the effect failed with code " + std::to_string(result.status) +
                      ofEffect(result));
    }
    if (!result.rendered || result.output == nullptr || result.outputUntouched) {
        throw Failure("the effect rendered no image" + ofEffect(result) +
                      "; check --region and --downsample");
    }
}

void warnAboutBooks(const headless::Host& host, pictures::Messages& messages) {
    const headless::Accounts accounts = host.accounts();
    if (accounts.clean()) return;
    messages.warn("the effect misused the host's interface: " + accounts.describe());
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& parent, const Invocation& invocation,
                             const std::vector<headless::ParameterInfo>& controls)
    : invocation_(invocation), effectOptions_(controls) {
    app_ = parent.add_subcommand("render", "Blur an image");
    app_->allow_extras();
    addOptions();
    colourOptions_.addTo(*app_);
    cameraOptions_.addTo(*app_);
    effectOptions_.addTo(*app_);
}

void RenderCommand::addOptions() {
    app_->add_option("INPUT", input_,
                     "image to blur, FILE:LAYER of a multi-layer EXR, or - for standard input")
        ->required();
    app_->add_option("-o,--output", output_,
                     "image to write; the suffix selects the format; - for standard output")
        ->type_name("FILE")
        ->required();
    app_->add_option("--output-format", outputFormat_,
                     "format for -o -: png, exr, ppm or another suffix; default png")
        ->type_name("SUFFIX");
    app_->add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
    app_->add_option("--region", region_, "render only this part, in full-resolution pixels")
        ->type_name("X,Y,W,H");
    app_->add_option("--downsample", downsample_,
                     "render at reduced resolution, such as 1/2 for a preview")
        ->type_name("N/D");
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
    app_->add_option("--threads", threads_, "threads to render with; default: one per processor")
        ->type_name("N");
    app_->add_option("--pixel-aspect", pixelAspect_,
                     "pixel width relative to height; default: that of the input")
        ->type_name("N/D");
    app_->add_option("--memory-limit", memoryLimit_,
                     "host memory that the effect may use, such as 900M")
        ->type_name("BYTES");
    app_->add_flag("--keep-overscan", keepOverscan_,
                   "grow the image, in EXR its data window, by the blur's reach; needs "
                   "--edge-behavior off");
    app_->add_flag("--crop-to-display", cropToDisplay_,
                   "write only the display window of an EXR, not the pixels beyond it");
    app_->add_flag("--pass-through", passThrough_,
                   "carry over the other channels and layers of an EXR, unchanged");
    app_->add_flag("--quiet", quiet_, "print only errors");
    app_->add_flag("--strict", strict_, "treat every warning as an error, and write no image");
    app_->add_flag("--stats", stats_, "print the seconds of each step, threads and peak memory");
}

RenderPlan RenderCommand::plan(const std::filesystem::path& output) const {
    RenderPlan plan;
    plan.extent.scale = parseDownsample(downsample_);
    if (!region_.empty()) plan.extent.region = parseRegion("--region", region_);
    plan.extent.keepOverscan = keepOverscan_;
    plan.extent.cropToDisplay = cropToDisplay_ || !pictures::formatOf(output).windows;
    if (!bits_.empty()) plan.bits = parseBits(bits_);
    plan.alpha = parseAlpha(alpha_);
    plan.passThrough = passThrough_;
    if (!outputType_.empty()) plan.outputType = parseSampleType(outputType_);
    if (!pixelAspect_.empty()) plan.pixelAspect = parseAspect(pixelAspect_);
    if (!threads_.empty()) {
        plan.host.threads = parseWhole("--threads", threads_, 1, kMostThreads);
    }
    if (!memoryLimit_.empty()) {
        plan.host.memoryLimit = parseBytes("--memory-limit", memoryLimit_);
    }
    return plan;
}

// Detects before a long render that its result couldn't be written.
void RenderCommand::checkOutput(const RenderPlan& plan, const std::filesystem::path& output) const {
    if (plan.outputType) pictures::requireType(pictures::formatOf(output), *plan.outputType);
    std::vector<std::string> inputs = effectOptions_.files();
    inputs.push_back(input_);
    requireOtherFile(output.string(), inputs);
    pictures::requireWritable(output);
}

headless::FrameRequest RenderCommand::makeRequest(const RenderPlan& plan,
                                                  const pictures::SourceImage& source) const {
    headless::FrameRequest request;
    request.bits = plan.bits;
    request.input = source.world();
    request.rect = wantedRect(plan.extent, source.picture());
    request.downsampleX = request.downsampleY = plan.extent.scale;
    request.cancel = &pictures::interruptFlag();
    return request;
}

// Reads the part of the image that the effect asks for.
void RenderCommand::loadSource(pictures::SourceImage& source, EffectSession& session,
                               const RenderPlan& plan, const pictures::ColourPlan& colours,
                               headless::FrameRequest request, Progress& progress,
                               pictures::Messages& messages) const {
    request.preRenderOnly = true;
    const PF_LRect needed = session.effect().renderFrame(request).inputRequest.rect;
    session.host().reclaimPreRenderRecords();
    const pictures::SourceFindings findings = source.load(
        neededWindow(needed, source.picture(), plan.extent.scale),
        [&](std::span<float> rgba) { colours.decode.apply(rgba); },
        [&](double share) { progress.update(share); });
    tellFindings(source.picture(), findings, plan.bits, messages);
    warnAboutExposure(session.effect().parameters(), findings.largestColour, messages);
}

headless::FrameResult RenderCommand::renderFrame(headless::Effect& effect,
                                                 headless::FrameRequest request,
                                                 Progress& progress) const {
    request.progress = [&](int current, int total) {
        if (total > 0) progress.update(static_cast<double>(current) / total);
    };
    headless::FrameResult result = effect.renderFrame(request);
    requireRendered(result);
    return result;
}

void RenderCommand::writeResult(const std::filesystem::path& output, const RenderPlan& plan,
                                const pictures::ColourPlan& colours,
                                const pictures::SourceImage& source, const headless::World& result,
                                Progress& progress, pictures::Messages& messages) const {
    const PF_RationalScale scale = plan.extent.scale;
    const pictures::Picture& picture = source.picture();
    const auto others = otherChannels(output, plan, source, result.rect(), messages);
    pictures::writeResult(output,
                          {.source = picture,
                           .result = result,
                           .data = resultWindow(result.rect(), picture, scale),
                           .display = displayWindow(picture, scale),
                           .grown = growsBeyondLayer(result.rect(), picture, scale),
                           .type = plan.outputType,
                           .colours = &colours,
                           .others = others.get(),
                           .progress = [&](double share) { progress.update(share); }},
                          messages);
}

int RenderCommand::run() {
    const OutputFile output(output_, outputFormat_);
    const RenderPlan plan = this->plan(output.path());
    checkOutput(plan, output.path());
    std::ostream& lines = output.isStandardOutput() ? invocation_.err : invocation_.out;
    pictures::Messages messages(invocation_.err, quiet_, strict_);
    const pictures::ColourConfig config = colourOptions_.config(messages);
    EffectSession session(requireBundle(bundle_, invocation_.programFolder), plan.host);
    headless::Effect& effect = session.effect();
    effectOptions_.applyControls(effect.parameters());
    cameraOptions_.check(effect.parameters(), effectOptions_);
    if (keepOverscan_) tellWhetherItGrows(effect.parameters(), messages);

    RenderStats stats;
    Progress progress(invocation_.err, invocation_.terminal && !quiet_);
    stats.begin("read");
    progress.begin(0.0, kShareOfReading);
    const InputFile input(input_, invocation_.in);
    pictures::SourceImage source(input.text(), plan.alpha, input.name());
    pictures::requireRoomForColours(output.path(), source.picture());
    tellOrientation(source.picture(), messages);
    if (!plan.passThrough) {
        tellLeftOut(source.picture().name, source.picture().leftOut, messages);
    }
    const pictures::Window& display = source.picture().display;
    const pictures::Size size{display.width(), display.height()};
    const double pixelAspect = plan.pixelAspect.value_or(pictures::pixelAspectOf(source.picture()));
    effectOptions_.applyLayers(effect.parameters(), size,
                               cameraOptions_.camera(source.picture(), pixelAspect, scaleOf(plan),
                                                     effectOptions_.givesFocus()),
                               messages, lines);
    noteOutsidePoints(effect.parameters(), display.width(), display.height(), messages);
    if (plan.extent.region && !keepOverscan_) {
        noteCutRegion(*plan.extent.region, display.width(), display.height(), messages);
    }
    moveToLayer(effect.parameters(), source.picture());
    const pictures::ColourPlan colours = pictures::planColours(
        source.picture().colour, source.picture().name,
        pictures::colourTarget(output.path(), source.picture(), plan.outputType),
        colourOptions_.wishes(), config, messages);
    if (colours.linearLight && !effectOptions_.gives("exposure")) {
        leaveOutExposure(effect.parameters(), source.picture().name, messages);
    }
    headless::FrameRequest request = makeRequest(plan, source);
    request.pixelAspect =
        applyPixelAspect(effect.parameters(), pixelAspect, source.picture().name, messages);
    loadSource(source, session, plan, colours, request, progress, messages);

    stats.begin("render");
    progress.begin(kShareOfReading, 1.0 - kShareOfWriting);
    const headless::FrameResult result = renderFrame(effect, request, progress);
    warnAboutBooks(session.host(), messages);
    request.input.reset();
    source.release();

    stats.begin("write");
    progress.begin(1.0 - kShareOfWriting, 1.0);
    writeResult(output.path(), plan, colours, source, *result.output, progress, messages);
    output.finish(invocation_.out);
    stats.end();
    progress.finish();
    if (stats_) stats.print(lines, session.host());
    return kExitSuccess;
}

}  // namespace cli
