// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/InspectCommand.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <system_error>

#include "cli/Errors.h"
#include "inspect/Layers.h"
#include "inspect/Panels.h"
#include "inspect/Radii.h"
#include "inspect/Spots.h"
#include "occlusion/Depths.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"
#include "pictures/files/PictureFormats.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

using pictures::numberText;

// The pictures, in the order of their rows on a sheet.
constexpr const char* kNames[] = {"aperture.png", "spots.png", "radius.png", "depth.png",
                                  "histogram.png"};
constexpr int kSpots = 12;
// Of the progress bar: most of the time goes into measuring.
constexpr double kFromReading = 0.08;
constexpr double kFromRadii = 0.6;
constexpr double kFromLayers = 0.85;
constexpr int kSheetWidth = 1548;  // pixels

fs::path withoutSlash(const fs::path& folder) {
    return folder.has_filename() ? folder : folder.parent_path();
}

// Whether the map's values are those on the effect's scale, but for an inversion.
bool isNormalised(const MapScale& map) {
    return map.curve.position(0.25) == 0.25 && map.curve.position(0.75) == 0.75;
}

// In the unit of the map; "far" beyond its values, and empty for what is nearer than all of them. A
// lens's curve leaps over its focus: all of the leap has the value of the focus.
std::string depthName(const MapScale& map, double nearness) {
    double value = map.inverted ? 1.0 - nearness : nearness;
    if (!isNormalised(map)) {
        value = map.value(nearness);
        constexpr double kBeyond = 1.01;
        const bool beyond = value > map.range.most * kBeyond || value < map.range.least / kBeyond;
        constexpr double kFar = 0.5;
        if (beyond) return nearness < kFar ? "far" : "";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", value);
    return text;
}

std::array<float, 2> depthsOfPoints(const headless::ParameterSet& parameters,
                                    const occlusion::Depths& depths, A_Time time) {
    std::array<float, 2> found{};
    const headless::Geometry geometry{.width = depths.width, .height = depths.height};
    for (int i = 0; i < 2; ++i) {
        const int index = parameters.find("Focus Point " + std::to_string(i));
        const PF_PointDef point = parameters.evaluate(index, time, geometry).u.td;
        constexpr double kOne = 65536.0;  // of a fixed-point number
        const auto column = static_cast<int>(std::floor(point.x_value / kOne));
        const auto row = static_cast<int>(std::floor(point.y_value / kOne));
        found[static_cast<std::size_t>(i)] = depths.nearness[depths.at(
            std::clamp(column, 0, depths.width - 1), std::clamp(row, 0, depths.height - 1))];
    }
    return found;
}

// Tells the bench the depths under the focus points, if they are used.
void aimAt(const occlusion::Depths& depths, inspect::Bench& bench) {
    const auto& parameters = bench.parameters;
    if (parameters.value(parameters.find("Use Focus Point"), bench.frame.time) == 0.0) return;
    bench.focusPoints = depthsOfPoints(parameters, depths, bench.frame.time);
}

// The part of the frame that is shown, as displayed on black.
inspect::View viewOf(const RenderJob& job, const occlusion::Depths& depths,
                     const inspect::Bench& bench) {
    const headless::World& input = *bench.frame.input;
    const PF_LRect rect = bench.frame.rect.value_or(input.rect());
    inspect::View view{.width = rect.right - rect.left,
                       .height = rect.bottom - rect.top,
                       .pixelAspect = job.pixelAspect()};
    const std::vector<float> edges = inspect::measureEdges(bench);
    std::vector<float> row(static_cast<std::size_t>(view.width) * pictures::kChannels);
    for (int y = rect.top; y < rect.bottom; ++y) {
        pictures::loadRow(input, rect.left, y, row);
        job.colours().encode.apply(row);
        for (int x = 0; x < view.width; ++x) {
            const float* const rgba =
                row.data() + static_cast<std::size_t>(x) * pictures::kChannels;
            const auto shown = [&](float value) { return std::clamp(value * rgba[3], 0.0F, 1.0F); };
            view.colours.push_back({shown(rgba[0]), shown(rgba[1]), shown(rgba[2])});
            const std::size_t at = depths.at(rect.left + x, y);
            view.nearness.push_back(depths.nearness[at]);
            if (!edges.empty()) view.edges.push_back(edges[at]);
        }
    }
    return view;
}

// Evenly over the depths of the view; the one next to the focus is moved there.
std::vector<float> depthsOfSpots(const inspect::View& view, double sharpest) {
    const auto [least, most] = std::ranges::minmax(view.nearness);
    std::vector<float> depths;
    depths.reserve(kSpots);
    for (int i = 0; i < kSpots; ++i) {
        depths.push_back(std::lerp(least, most, static_cast<float>(i) / (kSpots - 1)));
    }
    const auto focus = static_cast<float>(sharpest);
    if (focus < least || focus > most) return depths;
    *std::ranges::min_element(depths, {}, [&](float depth) { return std::fabs(depth - focus); }) =
        focus;
    return depths;
}

void tellDepthAt(const std::string& at, const pictures::DepthSample& sample, const MapScale& map,
                 const inspect::Radii& radii, const EffectOptions& effect, std::ostream& out) {
    const double nearness = map.inverted ? 1.0 - sample.position : sample.position;
    const bool nothing = !std::isfinite(sample.value);
    out << "depth at " << at << ": "
        << (nothing ? std::string("far, without depth") : numberText(sample.value)) << ", "
        << numberText(nearness) << " from far, 0, to near, 1\n"
        << "blur radius: " << numberText(std::round(radii.at(nearness) * 100.0) / 100.0)
        << " pixels\n"
        << "in focus with: --focus-at " << at;
    if (!nothing) out << " or --focus " << numberText(sample.value);
    if (effect.gives("focal-distance")) out << ", without --focal-distance";
    if (effect.gives("use-focus-point")) out << ", without --use-focus-point";
    out << std::endl;
}

}  // namespace

InspectCommand::InspectCommand(CLI::App& parent, const Invocation& invocation,
                               const headless::ParameterSet& controls)
    : invocation_(invocation), frameOptions_(controls) {
    app_ =
        parent.add_subcommand("inspect", "Draw what a blur does: its aperture, radii and depths");
    app_->allow_extras();
    frameOptions_.addTo(*app_,
                        "image to blur, FILE:LAYER of a multi-layer EXR, or - for standard input");
    app_->add_option("-o,--output", output_,
                     "image to write, with everything; or a folder, for one PNG each")
        ->type_name("FILE");
    app_->add_option("--at", at_,
                     "print the depth and the blur radius at this pixel of the image, and what "
                     "would put it into focus: X,Y or X%,Y%")
        ->type_name("X,Y");
    frameOptions_.addImageTo(*app_);
}

// A name without the suffix of an image is a folder.
bool InspectCommand::drawsFolder() const {
    return fs::is_directory(output_) || pictures::titleBySuffix(output_).empty();
}

fs::path InspectCommand::file(const std::string& name) const {
    return drawsFolder() ? fs::path(output_) / name : fs::path(output_);
}

// Detects before measuring that nothing could be written or printed.
void InspectCommand::check() const {
    if (output_.empty() && at_.empty()) {
        throw UsageError("-o is required, a file or a folder, unless --at is given");
    }
    if (!at_.empty() && !frameOptions_.effect().depthFile()) {
        throw UsageError("--at needs a depth map; add --depth-map-layer FILE");
    }
    if (output_.empty()) return;
    if (!fs::is_directory(output_)) return frameOptions_.checkOutput(withoutSlash(output_));
    for (const char* const name : kNames) frameOptions_.checkOutput(file(name));
}

void InspectCommand::inspect() {
    check();
    RenderPlan plan = frameOptions_.plan();
    plan.extent.cropToDisplay = true;
    pictures::Messages messages(invocation_.err, plan.quiet, plan.strict);
    ProgressBar progress(invocation_.err, invocation_.terminal && !plan.quiet);
    RenderStats stats;
    // Says for which format colours are converted.
    const OutputFile output(output_.empty() ? kNames[0] : file(kNames[0]).string(), "");
    RenderSession session(plan, frameOptions_.groups(), invocation_, messages);
    RenderJob job(
        session,
        {.input = frameOptions_.input(),
         .output = &output,
         .frame = frameOptions_.presets().frame(),
         .mapPerPixel = true,
         .at = at_},
        {.messages = messages, .lines = invocation_.out, .progress = progress, .stats = stats});
    const headless::FrameRequest request = job.prepare();
    if (const auto& map = job.map()) {
        inspectDepths({session.effect(), request, job.parameters(), std::nullopt}, job, *map,
                      progress);
    } else {
        messages.note("there is no depth map, so only the aperture is drawn");
        write({{inspect::aperturePanel(
            inspect::measureAperture({session.effect(), request, job.parameters(), std::nullopt}),
            kSheetWidth / 2)}});
    }
    if (!output_.empty() && !inspect::Canvas::hasFont()) {
        messages.note("the font DejaVu Sans wasn't found, so the pictures have no text");
    }
    session.checkBooks(messages);
}

void InspectCommand::inspectDepths(inspect::Bench bench, const RenderJob& job, const MapScale& map,
                                   Progress& progress) const {
    const occlusion::Depths depths =
        occlusion::readDepths(bench.parameters, bench.frame.input->width(),
                              bench.frame.input->height(), bench.frame.time);
    aimAt(depths, bench);
    const auto told = [&](double share) { progress.update(share); };
    progress.begin(kFromReading, kFromRadii);
    const inspect::Radii radii(bench, told);
    if (map.at) {
        tellDepthAt(at_, *map.at, map, radii, frameOptions_.effect(), invocation_.out);
    }
    if (output_.empty()) return;
    const inspect::View view = viewOf(job, depths, bench);
    progress.begin(kFromRadii, kFromLayers);
    const inspect::DepthFacts facts{
        .radii = radii,
        .name = [&](double nearness) { return depthName(map, nearness); },
        .layers = inspect::measureLayers(bench, told)};
    progress.begin(kFromLayers, 1.0);
    const auto spots = inspect::measureSpots(bench, depthsOfSpots(view, radii.sharpest()), told);
    constexpr int kHalf = (kSheetWidth - inspect::kPanelGap) / 2;
    constexpr int kSmall = 190;
    write({{inspect::aperturePanel(inspect::measureAperture(bench), kSmall),
            inspect::spotsPanel(spots, facts.name, kSheetWidth - kSmall - inspect::kPanelGap)},
           {inspect::radiusPanel(view, facts, kHalf), inspect::depthPanel(view, facts, kHalf)},
           {inspect::histogramPanel(view, facts, kSheetWidth)}});
}

void InspectCommand::write(const std::vector<std::vector<inspect::Canvas>>& rows) const {
    if (output_.empty()) return;
    if (!drawsFolder()) return inspect::sheet(rows).write(output_);
    std::error_code error;
    fs::create_directory(output_, error);
    if (error) throw Failure("cannot make the folder " + output_ + ": " + error.message());
    const char* const* name = kNames;
    for (const auto& row : rows) {
        for (const inspect::Canvas& each : row) {
            const std::vector<inspect::Canvas> alone[] = {{each}};
            inspect::sheet(alone).write(file(*name++));
        }
    }
}

int InspectCommand::run() {
    frameOptions_.presets().load();
    try {
        inspect();
        frameOptions_.presets().save();
        return kExitSuccess;
    } catch (const UsageError& error) {
        frameOptions_.presets().rethrow(error);
    }
}

}  // namespace cli
