// SPDX-License-Identifier: Apache-2.0
#include "cli/options/CameraSettings.h"

#include <algorithm>
#include <cmath>

#include "cli/Errors.h"
#include "pictures/Text.h"
#include "pictures/depth/DepthFocus.h"
#include "pictures/depth/LensRange.h"

namespace cli {
namespace {

using pictures::DepthSource;
using pictures::LensBlur;
using pictures::LensRange;
using pictures::LensView;
using pictures::numberText;

constexpr double kMostLayers = 16;  // of the control Resolution

std::string lengthText(double distance, const Camera& camera) {
    return numberText(distance) + (std::isfinite(distance) ? " " + camera.unit : "");
}

std::string oneDecimal(double pixels) {
    return numberText(std::round(pixels * 10.0) / 10.0);
}

void requireDistances(const DepthSource& source) {
    if (source.kind == pictures::DepthKind::kDistance) return;
    throw UsageError("--camera needs distances, but " + source.picture.name + " is read as " +
                     pictures::depthKindName(source.kind) +
                     "; if it holds distances, add --depth-kind distance");
}

void requireFocusable(const Camera& camera) {
    const pictures::Lens& lens = camera.view.lens;
    if (!lens.breathing || lens.focus > lens.focalLength) return;
    throw UsageError("a lens can't be focused nearer than its focal length, " +
                     numberText(lens.focalLength) +
                     " mm; check --scene-unit or leave out breathing=on");
}

void tellLens(const Camera& camera, pictures::Messages& messages) {
    const pictures::Lens& lens = camera.view.lens;
    messages.note("camera: " + numberText(lens.focalLength) + " mm at f/" + numberText(lens.fStop) +
                  ", pixels of " + numberText(camera.view.pixelSize * 1000.0) + " um, focus at " +
                  lengthText(lens.focus / camera.view.mapUnit, camera) +
                  (lens.breathing ? ", focused by moving the lens" : ""));
}

void tellControls(const headless::ParameterSet& parameters, const Camera& camera,
                  const LensBlur& blur, pictures::Messages& messages) {
    const auto control = [&](const char* label) {
        return std::string(label) + " " + numberText(parameters.value(parameters.find(label)));
    };
    messages.note("camera: near " + lengthText(blur.near(), camera) + ", far " +
                  lengthText(blur.far(), camera) + ", " + control("Blur Radius") + ", " +
                  control("Focal Distance") + ", " + control("Profile"));
}

void tellBlur(const Camera& camera, const LensBlur& blur, double layers,
              pictures::Messages& messages) {
    const auto radiusAt = [&](double distance) {
        return oneDecimal(camera.view.radius(distance)) + " at " + lengthText(distance, camera);
    };
    const bool mostLayers = layers >= kMostLayers || oneDecimal(blur.layerStep()) == "0";
    const std::string moreLayers =
        mostLayers ? ""
                   : " (--resolution 16: " +
                         oneDecimal(blur.layerStep() * (layers - 1) / (kMostLayers - 1)) + ")";
    messages.note("camera: blur radius in pixels " + radiusAt(blur.near()) + ", " +
                  radiusAt(blur.far()) + "; with " + numberText(layers) +
                  " depth layers, a blur between two of them is mixed from two radii " +
                  oneDecimal(blur.layerStep()) + " apart" + moreLayers);
}

void tellStrays(const LensRange& range, const Camera& camera, pictures::Messages& messages) {
    if (range.strays == 0) return;
    messages.note("camera: " + pictures::counted(range.strays, "stray pixel") +
                  " of the map nearer than " + lengthText(range.span.nearest, camera) +
                  " get the blur of that distance");
}

// Where the blur of the range is cut: "nearer than 1 m or farther than 4 m".
std::string sidesBeyond(const LensRange& range, const Camera& camera, const LensBlur& blur) {
    constexpr double kRounding = 1.0 + 1e-6;
    std::string text;
    if (blur.near() > range.span.nearest * kRounding) {
        text = "nearer than " + lengthText(blur.near(), camera);
    }
    if (blur.far() * kRounding < range.span.farthest) {
        text += (text.empty() ? "" : " or ") + ("farther than " + lengthText(blur.far(), camera));
    }
    return text;
}

// How far the image would have to be reduced for its largest blur. The control counts in pixels of
// the full resolution, so that --downsample doesn't help.
void warnAboutReach(const DepthSource& source, const LensRange& range, const Camera& camera,
                    const LensBlur& blur, pictures::Messages& messages) {
    const LensView& view = camera.view;
    const double wanted =
        std::max(view.radius(range.span.nearest), view.radius(range.span.farthest));
    const std::size_t beyond = countBeyond(source, range.span, blur);
    if (wanted <= camera.largestRadius || beyond == 0) return;
    const double share = camera.largestRadius / wanted;
    messages.warn("the lens blurs by up to " + oneDecimal(wanted) + " pixels, the effect by " +
                  oneDecimal(camera.largestRadius) + ": " + pictures::counted(beyond, "pixel") +
                  " of the map " + sidesBeyond(range, camera, blur) +
                  " get too little; an image reduced to " +
                  numberText(std::floor(camera.width * share)) +
                  " pixels in width would do (--downsample wouldn't)");
}

}  // namespace

std::function<double(double)> applyCamera(headless::ParameterSet& parameters, const Camera& camera,
                                          const DepthSource& source, pictures::Messages& messages) {
    requireDistances(source);
    requireFocusable(camera);
    const double layers = parameters.value(parameters.find("Resolution"), camera.time);
    const LensRange range = lensRange(source, camera.view);
    const LensBlur blur(camera.view, range.span,
                        {.layers = static_cast<int>(layers),
                         .downsample = camera.downsample,
                         .largestRadius = camera.largestRadius});
    parameters.set("Blur Radius", blur.blurRadius());
    parameters.set("Focal Distance",
                   pictures::focalDistance(blur.focus(), source.controls.inverted));
    parameters.set("Profile", 0.0);
    tellLens(camera, messages);
    tellControls(parameters, camera, blur, messages);
    tellBlur(camera, blur, layers, messages);
    tellStrays(range, camera, messages);
    warnAboutReach(source, range, camera, blur, messages);
    return [blur](double distance) { return blur.position(distance); };
}

}  // namespace cli
