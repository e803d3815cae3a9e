// SPDX-License-Identifier: Apache-2.0
#include "cli/render/RenderJob.h"

#include <ostream>

#include "cli/Errors.h"
#include "cli/options/IdleOptions.h"
#include "cli/render/ExposureCheck.h"
#include "cli/render/OutsideNotes.h"
#include "cli/render/OverscanLayer.h"
#include "cli/render/PixelAspect.h"
#include "cli/render/SourceReport.h"
#include "pictures/Interrupt.h"
#include "pictures/files/PictureFormats.h"
#include "pictures/files/PictureReader.h"
#include "pictures/files/PictureWriter.h"
#include "shot/PresetText.h"

namespace cli {
namespace {

// Of the progress bar: most of the time goes into the blur.
constexpr double kShareOfReading = 0.08;
constexpr double kShareOfWriting = 0.05;

void tellWhetherItGrows(const headless::ParameterSet& parameters, A_Time time,
                        pictures::Messages& messages) {
    if (choiceAt(parameters, "Edge Behavior", time) == 0) return;
    messages.note(
        "--keep-overscan has no effect while edge pixels are repeated; add --edge-behavior off");
}

bool isWhole(PF_RationalScale scale) {
    return static_cast<A_u_long>(scale.num) == scale.den;
}

// Throws UsageError if the result can't have the other channels of the input, whatever its window.
void requireSameGrid(const std::filesystem::path& output, const RenderPlan& plan,
                     const pictures::Picture& picture) {
    const pictures::PictureFormat& format = pictures::formatOf(output);
    if (!format.windows) {
        throw UsageError("--pass-through needs an EXR to write, not " + format.title +
                         "; name one with -o");
    }
    if (picture.turned) {
        throw UsageError("--pass-through doesn't turn channels, and " + picture.name +
                         " is turned upright; turn it first");
    }
    if (!isWhole(plan.extent.scale)) {
        throw UsageError("--pass-through keeps the resolution; leave out --downsample");
    }
}

// Throws UsageError, naming the cause, if the window of the result isn't the input's data window,
// that of the other channels.
void requireSameWindow(const RenderExtent& extent, const pictures::SourceImage& source,
                       const PF_LRect& result) {
    const pictures::Window data = source.file().dataWindow();
    if (resultWindow(result, source.picture(), extent.scale) == data) return;
    const std::string rule = "--pass-through keeps the data window of the input; ";
    if (extent.region) throw UsageError(rule + "leave out --region");
    if (extent.keepOverscan) throw UsageError(rule + "leave out --keep-overscan");
    if (extent.cropToDisplay && source.picture().window == data) {
        throw UsageError(rule + "leave out --crop-to-display");
    }
    throw UsageError(rule + "that of " + source.picture().name +
                     " doesn't cover the display window, which is rendered");
}

// The channels to carry over, if the user wants it.
std::unique_ptr<pictures::PassThrough> otherChannels(const RenderPlan& plan,
                                                     const pictures::SourceImage& source,
                                                     pictures::Messages& messages) {
    if (!plan.passThrough) return nullptr;
    auto others = std::make_unique<pictures::PassThrough>(
        source.file().file(), source.file().otherChannels(), source.file().dataWindow());
    tellLeftOut(source.picture().name, others->leftOut(), messages);
    return others;
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

}  // namespace

RenderSession::RenderSession(const RenderPlan& plan, const RenderOptions& options,
                             const Invocation& invocation, pictures::Messages& messages)
    : plan_(plan),
      options_(options),
      in_(invocation.in),
      config_(options.colour.config(messages)),
      effect_(requireBundle(plan.bundle, invocation.programFolder), plan.host) {
    headless::ParameterSet& parameters = effect_.effect().parameters();
    options_.effect.applyControls(parameters);
    options_.camera.check(parameters, options_.effect);
    options_.occlusion.check(parameters, plan_.bits, options_.effect.gives(kDepthLayer));
    if (options_.occlusion.given() && !options_.effect.gives("composite-mode")) {
        parameters.setChoice(parameters.find("Composite Mode"), "Split");
    }
    warnAboutIdleOptions(effect_.effect(), options_.effect, invocation.arguments, messages);
    if (plan_.extent.keepOverscan) tellWhetherItGrows(parameters, A_Time{0, 1}, messages);
}

void RenderSession::checkBooks(pictures::Messages& messages) {
    const headless::Accounts accounts = host().accounts();
    if (accounts.clean()) return;
    messages.warn("the effect misused the host's interface: " + accounts.describe());
}

RenderJob::RenderJob(RenderSession& session, FrameFiles files, const FrameWatchers& watchers)
    : session_(session),
      plan_(session.plan()),
      options_(session.options()),
      files_(std::move(files)),
      watchers_(watchers),
      messages_(watchers.messages),
      parameters_(session.effect().parameters()) {}

headless::FrameRequest RenderJob::prepare() {
    begin("read", 0.0, kShareOfReading);
    openSource();
    setLayers();
    planColours();
    if (copiesAssociated()) source_->keepAssociated();
    headless::FrameRequest request = makeRequest();
    loadSource(request);
    return request;
}

void RenderJob::run() {
    headless::FrameRequest request = prepare();

    begin("render", kShareOfReading, 1.0 - kShareOfWriting);
    const headless::FrameResult result =
        files_.black ? blackFrame(request) : renderFrame(std::move(request));

    begin("write", 1.0 - kShareOfWriting, 1.0);
    writeResult(*result.output);
    watchers_.stats.end();
}

void RenderJob::readMap() {
    input_ = std::make_unique<InputFile>(files_.input, session_.in());
    source_ = std::make_unique<pictures::SourceImage>(input_->text(), plan_.alpha, input_->name());
    setLayers();
}

occlusion::View RenderJob::view() const {
    const std::shared_ptr<headless::World>& world = source_->world();
    return occlusion::viewOf(parameters_, world->width(), world->height(), downsample(), time());
}

void RenderJob::begin(const char* step, double from, double to) {
    watchers_.stats.begin(step);
    watchers_.progress.begin(from, to);
}

// Says how the image is read.
void RenderJob::openSource() {
    input_ = std::make_unique<InputFile>(files_.input, session_.in());
    source_ = std::make_unique<pictures::SourceImage>(input_->text(), plan_.alpha, input_->name());
    pictures::requireRoomForColours(files_.output->path(), picture());
    if (plan_.passThrough) requireSameGrid(files_.output->path(), plan_, picture());
    tellOrientation(picture(), messages_);
    if (!plan_.passThrough) tellLeftOut(picture().name, picture().leftOut, messages_);
}

// Reads the depth map and the shape.
void RenderJob::setLayers() {
    const pictures::Size display = displaySize(picture());
    auto camera = options_.camera.camera(picture(), pixelAspect(), downsample(),
                                         options_.effect.givesFocus());
    if (camera) camera->time = time();
    map_ = options_.effect.applyLayers(
        parameters_,
        {.image = &picture(),
         .camera = camera,
         .forEachPixel = options_.occlusion.given() || files_.mapPerPixel,
         .names = files_.layers,
         .findings = files_.findings,
         .time = time(),
         .at = files_.at},
        messages_, watchers_.lines);
    if (map_ && options_.occlusion.given()) options_.occlusion.options(*map_);
    noteOutsidePoints(parameters_, time(), display.width, display.height, messages_);
    if (plan_.extent.region && !plan_.extent.keepOverscan) {
        noteCutRegion(*plan_.extent.region, regionLimits(plan_.extent, picture()), messages_);
    }
    movePointsToLayer(parameters_, picture());
}

void RenderJob::planColours() {
    colours_ = pictures::planColours(
        picture().colour, picture().name,
        pictures::colourTarget(files_.output->path(), picture(), plan_.outputType),
        options_.colour.wishes(), session_.config(), messages_);
    if (colours_.linearLight && !options_.effect.gives("exposure")) {
        leaveOutExposure(parameters_, picture().name, messages_);
    }
}

// Whether the effect copies associated float colours to a file that holds such colours, too: to
// divide them by alpha and multiply them again would round them.
bool RenderJob::copiesAssociated() {
    const bool copies = parameters_.value(parameters_.find("Blur Radius"), time()) == 0.0 &&
                        plan_.bits == 32 && isWhole(plan_.extent.scale);
    const bool converts = !colours_.decode.identity() || !colours_.encode.identity();
    return copies && !converts && picture().associated &&
           pictures::worldBits(picture().type) == 32 &&
           pictures::writesAssociated(files_.output->path(), picture());
}

headless::FrameRequest RenderJob::makeRequest() {
    headless::FrameRequest request;
    request.parameters = &parameters_;
    request.time = time();
    request.bits = plan_.bits;
    request.input = source_->world();
    request.rect = wantedRect(plan_.extent, picture());
    request.downsampleX = request.downsampleY = plan_.extent.scale;
    request.cancel = &pictures::interruptFlag();
    request.pixelAspect =
        applyPixelAspect(parameters_, time(), pixelAspect(), picture().name, messages_);
    return request;
}

// Reads the part of the image that the effect asks for.
void RenderJob::loadSource(headless::FrameRequest request) {
    request.preRenderOnly = true;
    const headless::FrameResult asked = session_.effect().renderFrame(request);
    if (plan_.passThrough && asked.status == PF_Err_NONE) {
        requireSameWindow(plan_.extent, *source_, asked.resultRect);
    }
    const pictures::SourceFindings findings = source_->load(
        options_.occlusion.given()
            ? picture().window
            : neededWindow(asked.inputRequest.rect, picture(), plan_.extent.scale),
        [&](std::span<float> rgba) { colours_.decode.apply(rgba); },
        [&](double share) { watchers_.progress.update(share); });
    tellFindings(picture(), findings, plan_.bits, messages_);
    checkExposure(parameters_, time(), findings.largestColour, plan_.force, messages_);
}

// Frees the source when it is done.
headless::FrameResult RenderJob::renderFrame(headless::FrameRequest request) {
    request.progress = [&](int current, int total) {
        if (total > 0) watchers_.progress.update(static_cast<double>(current) / total);
    };
    headless::FrameResult result = renderSlabs(request);
    requireRendered(result);
    source_->release();
    return result;
}

headless::FrameResult RenderJob::renderSlabs(const headless::FrameRequest& request) {
    if (!map_ || !options_.occlusion.given()) return session_.effect().renderFrame(request);
    headless::ParameterSet own = parameters_;
    parameters_.setLayer(parameters_.find("Layer"), nullptr);  // its memory is freed in time
    occlusion::Result result = occlusion::render(session_.host(), session_.effect(), request,
                                                 std::move(own), slabs(*map_));
    if (result.frame.status == PF_Err_NONE) tellSlabs(result.slabs, *map_, messages_);
    return std::move(result.frame);
}

// Bounds that were chosen for the whole shot, or what the option says.
occlusion::Options RenderJob::slabs(const MapScale& map) const {
    if (!files_.findings || !files_.findings->bounds) {
        return options_.occlusion.options(map);
    }
    const std::vector<float>& bounds = *files_.findings->bounds;
    return {.slabs = static_cast<int>(bounds.size()) + 1, .bounds = bounds};
}

// As large as the blurred one would be, without light and, where there is alpha, transparent.
headless::FrameResult RenderJob::blackFrame(const headless::FrameRequest& request) {
    headless::FrameRequest ask = request;
    ask.preRenderOnly = true;
    headless::FrameResult result = session_.effect().renderFrame(ask);
    const PF_LRect& rect = result.resultRect;
    result.output = std::make_shared<headless::World>(
        rect.right - rect.left, rect.bottom - rect.top, PF_PixelFormat_ARGB128,
        headless::WorldOptions{.originX = rect.left, .originY = rect.top});
    return result;
}

// What the metadata says: the plan's settings, and the frame that they were rendered at.
std::string RenderJob::settingsText() const {
    if (!plan_.settings) return {};
    shot::Preset preset = *plan_.settings;
    preset.frame = files_.frame;
    return shot::presetText(preset, shot::Layout::kOneLine);
}

void RenderJob::writeResult(const headless::World& result) {
    const PF_RationalScale scale = plan_.extent.scale;
    const auto others = otherChannels(plan_, *source_, messages_);
    pictures::writeResult(files_.output->path(),
                          {.source = picture(),
                           .result = result,
                           .data = resultWindow(result.rect(), picture(), scale),
                           .display = displayWindow(picture(), scale),
                           .grown = growsBeyondLayer(result.rect(), picture(), scale),
                           .associated = source_->keepsAssociated(),
                           .type = plan_.outputType,
                           .pixelAspect = plan_.pixelAspect,
                           .colours = &colours_,
                           .settings = settingsText(),
                           .others = others.get(),
                           .progress = [&](double share) { watchers_.progress.update(share); }},
                          messages_);
}

}  // namespace cli
