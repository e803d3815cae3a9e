// SPDX-License-Identifier: Apache-2.0
#include "cli/RenderCommand.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <system_error>

#include "cli/Errors.h"
#include "cli/ExposureCheck.h"
#include "cli/Numbers.h"
#include "cli/Progress.h"
#include "pictures/AtomicFile.h"
#include "pictures/Interrupt.h"
#include "pictures/Messages.h"
#include "pictures/PictureFormats.h"
#include "pictures/PictureReader.h"
#include "pictures/PictureWriter.h"
#include "pictures/PixelAspect.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"
#include "platform/Rectangles.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

constexpr int kMostThreads = 1024;
// More than the reach of any blur; the effect itself reports how far the result grows.
constexpr int kOverscanRoom = 32768;

int parseBits(const std::string& text) {
    if (text == "8" || text == "16" || text == "32") return parseWhole("--bits", text, 8, 32);
    throw UsageError("--bits takes 8, 16 or 32, not \"" + text + "\"");
}

PF_RationalScale parseDownsample(const std::string& text) {
    const PF_RationalScale scale = parseRatio("--downsample", text);
    if (static_cast<A_u_long>(scale.num) <= scale.den) return scale;
    throw UsageError("--downsample takes a ratio of at most 1, such as 1/2, not \"" + text + "\"");
}

PF_RationalScale parseAspect(const std::string& text) {
    const PF_RationalScale aspect = parseRatio("--pixel-aspect", text);
    if (static_cast<A_u_long>(aspect.num) >= aspect.den) return aspect;
    throw UsageError(
        "--pixel-aspect takes a ratio of at least 1, since the effect reads it as a "
        "whole number, not \"" +
        text + "\"");
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

void tellRepairs(const pictures::Picture& picture, const pictures::Repairs& repairs,
                 pictures::Messages& messages) {
    if (repairs.notFinite > 0) {
        messages.warn(picture.name + ": replaced " +
                      pictures::counted(repairs.notFinite, "non-finite value") +
                      ", NaN by 0 and infinity by 65504");
    }
    if (repairs.lightWithoutAlpha > 0) {
        messages.warn(picture.name + ": " + pictures::counted(repairs.lightWithoutAlpha, "pixel") +
                      " with colour but alpha 0; the blur drops that light");
    }
}

std::string firstFew(const std::vector<std::string>& names) {
    constexpr std::size_t kShown = 8;
    std::string list;
    for (std::size_t i = 0; i < std::min(names.size(), kShown); ++i) {
        list += (i == 0 ? "" : ", ") + names[i];
    }
    if (names.size() > kShown) list += " and " + std::to_string(names.size() - kShown) + " more";
    return list;
}

void tellLeftOut(const pictures::Picture& picture, pictures::Messages& messages) {
    if (!picture.leftOut.empty()) {
        messages.note("not carried over from " + picture.name + ": " + firstFew(picture.leftOut));
    }
    if (picture.cropped) {
        messages.note(picture.name +
                      " has overscan; pixels outside its display window are not used");
    }
}

// Reads the input, repairs bad values and reports what was changed or left out.
pictures::Picture readInput(const std::string& name, pictures::Messages& messages) {
    pictures::Picture picture = pictures::readPicture(name);
    tellRepairs(picture, pictures::repair(picture), messages);
    tellLeftOut(picture, messages);
    return picture;
}

// A rectangle of the full-resolution image in pixels of the downsample, rounded outwards.
PF_LRect scaledRect(const pictures::Window& window, PF_RationalScale scale) {
    const double factor = static_cast<double>(scale.num) / scale.den;
    const auto low = [&](int edge) { return static_cast<A_long>(std::floor(edge * factor)); };
    const auto high = [&](int edge) { return static_cast<A_long>(std::ceil(edge * factor)); };
    return {low(window.left), low(window.top), high(window.right), high(window.bottom)};
}

// The rectangle to request from the effect. Without overscan it stays inside the layer.
PF_LRect wantedRect(const RenderPlan& plan, const pictures::Picture& picture, bool keepOverscan) {
    const pictures::Window layer{0, 0, picture.width(), picture.height()};
    const pictures::Window room{-kOverscanRoom, -kOverscanRoom, layer.right + kOverscanRoom,
                                layer.bottom + kOverscanRoom};
    pictures::Window wanted = plan.region.value_or(keepOverscan ? room : layer);
    if (!keepOverscan) wanted = intersection(wanted, layer);
    if (wanted.empty()) {
        throw UsageError("--region is outside the image, which has " + std::to_string(layer.right) +
                         "x" + std::to_string(layer.bottom) + " pixels");
    }
    return scaledRect(wanted, plan.scale);
}

PF_RationalScale pixelAspect(const RenderPlan& plan, const pictures::Picture& picture,
                             pictures::Messages& messages) {
    if (plan.pixelAspect) return *plan.pixelAspect;
    return pictures::aspectRatio(pictures::pixelAspectOf(picture), picture.name, messages);
}

// Integer worlds hold straight colours up to 1: brighter light is clipped, and so is an associated
// colour above its alpha.
void warnAboutClipping(const pictures::Picture& picture, int bits, pictures::Messages& messages) {
    if (bits == 32) return;
    std::size_t above = 0;
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        const float* p = picture.pixel(i);
        const float top = picture.associated && p[3] > 0.0F ? std::min(p[3], 1.0F) : 1.0F;
        if (std::max({p[0], p[1], p[2]}) > top) ++above;
    }
    if (above == 0) return;
    messages.warn(picture.name + ": " + pictures::counted(above, "pixel") + " too bright for " +
                  std::to_string(bits) + " bits, clipped; use --bits 32 to keep the highlights");
}

void tellWhetherItGrows(const headless::ParameterSet& parameters, pictures::Messages& messages) {
    if (parameters.value(parameters.find("Edge Behavior")) == 0.0) return;
    messages.note(
        "--keep-overscan has no effect while edge pixels are repeated; add --edge-behavior off");
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

void printStats(std::ostream& out, double seconds, const headless::Host& host) {
    const auto peak = host.memory().peak;
    char text[160];
    std::snprintf(text, sizeof text,
                  "rendered in %.3f seconds on %d threads; peak of host memory %llu bytes "
                  "(%.1f MiB)\n",
                  seconds, host.threads(), static_cast<unsigned long long>(peak),
                  static_cast<double>(peak) / (1024.0 * 1024.0));
    out << text;
}

}  // namespace

RenderCommand::RenderCommand(CLI::App& parent, const Invocation& invocation,
                             const std::vector<headless::ParameterInfo>& controls)
    : invocation_(invocation), effectOptions_(controls) {
    app_ = parent.add_subcommand("render", "Blur an image");
    app_->allow_extras();
    addOptions();
    effectOptions_.addTo(*app_);
}

void RenderCommand::addOptions() {
    app_->add_option("INPUT", input_, "image to blur, or FILE:LAYER of a multi-layer EXR")
        ->required();
    app_->add_option("-o,--output", output_, "image to write; the suffix selects the format")
        ->type_name("FILE")
        ->required();
    app_->add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
    app_->add_option("--region", region_, "render only this part, in full-resolution pixels")
        ->type_name("X,Y,W,H");
    app_->add_option("--downsample", downsample_,
                     "render at reduced resolution, such as 1/2 for a preview")
        ->type_name("N/D");
    app_->add_option("--bits", bits_,
                     "bits per channel to render with: 8, 16 or 32; default: those of the input")
        ->type_name("BITS");
    app_->add_option("--threads", threads_, "threads to render with; default: one per processor")
        ->type_name("N");
    app_->add_option("--pixel-aspect", pixelAspect_,
                     "pixel width relative to height, at least 1; default: that of the input")
        ->type_name("N/D");
    app_->add_option("--memory-limit", memoryLimit_,
                     "host memory that the effect may use, such as 900M")
        ->type_name("BYTES");
    app_->add_flag("--keep-overscan", keepOverscan_,
                   "grow the image, in EXR its data window, by the blur's reach; needs "
                   "--edge-behavior off");
    app_->add_flag("--quiet", quiet_, "print only errors");
    app_->add_flag("--stats", stats_, "print seconds, threads and peak host memory");
}

RenderPlan RenderCommand::plan() const {
    RenderPlan plan;
    plan.scale = parseDownsample(downsample_);
    if (!region_.empty()) plan.region = parseRegion("--region", region_);
    if (!bits_.empty()) plan.bits = parseBits(bits_);
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
void RenderCommand::checkOutput() const {
    pictures::formatOf(output_);
    std::vector<std::string> inputs = effectOptions_.files();
    inputs.push_back(input_);
    requireOtherFile(output_, inputs);
    pictures::requireWritable(output_);
}

headless::FrameRequest RenderCommand::makeRequest(const RenderPlan& plan,
                                                  const pictures::Picture& picture,
                                                  pictures::Messages& messages) const {
    headless::FrameRequest request;
    request.bits = plan.bits.value_or(pictures::worldBits(picture.type));
    warnAboutClipping(picture, request.bits, messages);
    request.input = pictures::makeWorld(picture, request.bits);
    request.rect = wantedRect(plan, picture, keepOverscan_);
    request.downsampleX = request.downsampleY = plan.scale;
    request.pixelAspect = pixelAspect(plan, picture, messages);
    request.cancel = &pictures::interruptFlag();
    return request;
}

headless::FrameResult RenderCommand::renderFrame(headless::Effect& effect,
                                                 headless::FrameRequest request) const {
    Progress progress(invocation_.err, invocation_.terminal && !quiet_);
    request.progress = [&](int current, int total) { progress.update(current, total); };
    return effect.renderFrame(request);
}

int RenderCommand::run() {
    const RenderPlan plan = this->plan();
    checkOutput();
    pictures::Messages messages(invocation_.err, quiet_);
    EffectSession session(requireBundle(bundle_, invocation_.programFolder), plan.host);
    headless::ParameterSet& parameters = session.effect().parameters();
    effectOptions_.applyControls(parameters);
    if (keepOverscan_) tellWhetherItGrows(parameters, messages);

    const pictures::Picture picture = readInput(input_, messages);
    const pictures::Size size{picture.display.width(), picture.display.height()};
    effectOptions_.applyLayers(parameters, size, messages, invocation_.out);
    const headless::FrameRequest request = makeRequest(plan, picture, messages);
    warnAboutExposure(parameters, pictures::largestColour(*request.input), messages);
    pictures::throwIfInterrupted();

    const auto start = std::chrono::steady_clock::now();
    const headless::FrameResult result = renderFrame(session.effect(), request);
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    requireRendered(result);
    warnAboutBooks(session.host(), messages);

    pictures::writeResult(output_,
                          {.source = picture,
                           .result = *result.output,
                           .layerWidth = headless::reducedSize(picture.width(), plan.scale),
                           .layerHeight = headless::reducedSize(picture.height(), plan.scale),
                           .scale = static_cast<double>(plan.scale.num) / plan.scale.den},
                          messages);
    if (stats_) printStats(invocation_.out, elapsed.count(), session.host());
    return kExitSuccess;
}

}  // namespace cli
