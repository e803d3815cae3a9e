// SPDX-License-Identifier: Apache-2.0
#include "cli/options/CameraOptions.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <utility>

#include "cli/Choices.h"
#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "cli/render/PixelAspect.h"
#include "pictures/depth/LensMetadata.h"

namespace cli {
namespace {

constexpr double kLargestBlurRadius = 500.0;  // of the control
constexpr const char* kForm =
    "exif or KEY=VALUE with focal-length, f-stop, sensor-width, sensor-height, focus and "
    "breathing, separated by commas";

[[noreturn]] void refuse(const std::string& piece) {
    throw UsageError("--camera takes " + std::string(kForm) + ", not \"" + piece + "\"");
}

double positive(const std::string& key, const std::string& text) {
    const double value = key == "focus" ? parseDistance("--camera focus", text)
                                        : parseNumber("--camera " + key, text);
    if (value > 0.0) return value;
    throw UsageError("--camera " + key + " takes a number above 0, not \"" + text + "\"");
}

bool onOrOff(const std::string& text) {
    if (text == "on" || text == "off") return text == "on";
    throw UsageError("--camera breathing takes on or off, not \"" + text + "\"");
}

void addWish(CameraWishes& wishes, const std::string& piece) {
    const std::size_t equals = piece.find('=');
    const std::string key = piece.substr(0, equals);
    if (piece == "exif") {
        wishes.exif = true;
        return;
    }
    if (equals == std::string::npos) refuse(piece);
    const std::string value = piece.substr(equals + 1);
    const std::pair<const char*, std::optional<double>*> numbers[] = {
        {"focal-length", &wishes.focalLength},
        {"f-stop", &wishes.fStop},
        {"sensor-width", &wishes.sensorWidth},
        {"sensor-height", &wishes.sensorHeight},
        {"focus", &wishes.focus}};
    for (const auto& [name, number] : numbers) {
        if (key == name) *number = positive(key, value);
    }
    const bool known = std::any_of(std::begin(numbers), std::end(numbers),
                                   [&](const auto& each) { return key == each.first; });
    if (key == "breathing") {
        wishes.breathing = onOrOff(value);
    } else if (!known) {
        refuse(piece);
    }
}

double parseUnit(const std::string& text) {
    constexpr Choice<double> kUnits[] = {
        {"m", 1000.0}, {"cm", 10.0}, {"mm", 1.0}, {"ft", 304.8}, {"in", 25.4}};
    return parseChoice("--scene-unit", text, kUnits);
}

// Controls that the camera sets, and options that map distances in another way.
void requireAlone(const EffectOptions& others) {
    for (const char* control : {"blur-radius", "focal-distance", "profile"}) {
        if (!others.gives(control)) continue;
        throw UsageError("--camera sets the control itself; leave out --" + std::string(control));
    }
    if (others.mapsDepth()) {
        throw UsageError(
            "--camera finds the range of the depth map itself; leave out --depth-near, "
            "--depth-far, --depth-auto and --depth-inverse");
    }
}

// The height of a pixel on the sensor in millimetres, if it is known.
std::optional<double> pixelSize(const CameraWishes& wishes, const pictures::LensMetadata& file,
                                const pictures::Picture& image, double pixelAspect) {
    const double height = image.display.height();
    const double columns = image.display.width() * pixelAspect;
    if (wishes.sensorWidth) return *wishes.sensorWidth / columns;
    if (wishes.sensorHeight) return *wishes.sensorHeight / height;
    if (file.sensorWidth) return *file.sensorWidth / (image.transposed ? height : columns);
    if (!file.filmFocalLength || !file.focalLength) return std::nullopt;
    return pictures::sensorWidthFromFilm(*file.focalLength, *file.filmFocalLength,
                                         columns / height) /
           columns;
}

// Throws UsageError unless there is everything.
void requireComplete(const CameraWishes& wishes, const Camera& camera, bool focusElsewhere,
                     const std::string& image) {
    std::string missing;
    const auto need = [&](double value, const char* name) {
        if (!(value > 0.0)) missing += (missing.empty() ? "" : ", ") + std::string(name);
    };
    need(camera.view.lens.focalLength, "focal-length");
    need(camera.view.lens.fStop, "f-stop");
    need(camera.view.pixelSize, "sensor-width");
    if (!focusElsewhere) need(camera.view.lens.focus, "focus");
    if (missing.empty()) return;
    const std::string subject = wishes.exif ? image + " doesn't say all of the camera: " : "";
    throw UsageError(subject + "--camera lacks " + missing +
                     (missing.ends_with("focus") ? " (or --focus, --focus-at)" : ""));
}

}  // namespace

CameraWishes parseCamera(const std::string& text) {
    if (text.empty()) refuse(text);
    CameraWishes wishes;
    std::set<std::string> keys;
    std::istringstream pieces(text);
    for (std::string piece; std::getline(pieces, piece, ',');) {
        addWish(wishes, piece);
        const std::string key = piece.substr(0, piece.find('='));
        if (!keys.insert(key).second) throw UsageError("--camera has " + key + " twice");
    }
    if (wishes.sensorWidth && wishes.sensorHeight) {
        throw UsageError(
            "--camera sensor-width and sensor-height exclude each other, since the image's shape "
            "gives the other; leave out one");
    }
    return wishes;
}

void CameraOptions::addTo(CLI::App& app) {
    const std::string group = "Camera";
    option_ =
        app.add_option(
               "--camera", camera_,
               "blur as this lens does, by a depth map with distances: " + std::string(kForm) +
                   "; in millimetres, the focus in --scene-unit; exif takes what the input "
                   "says, breathing=on is for a lens focused by moving it")
            ->type_name("CAMERA")
            ->group(group);
    app.add_option("--scene-unit", sceneUnit_,
                   "unit of the depth map's distances: m, cm, mm, ft or in; default m")
        ->type_name("m|cm|mm|ft|in")
        ->group(group);
}

void CameraOptions::check(const headless::ParameterSet& parameters,
                          const EffectOptions& others) const {
    if (!sceneUnit_.empty()) parseUnit(sceneUnit_);
    if (!given()) {
        if (sceneUnit_.empty()) return;
        throw UsageError("--scene-unit is for --camera; add it");
    }
    const CameraWishes wishes = parseCamera(camera_);
    requireAlone(others);
    if (!others.gives(kDepthLayer)) {
        throw UsageError("--camera needs a depth map with distances; add --depth-map-layer FILE");
    }
    if (wishes.focus && others.givesFocus()) {
        throw UsageError("--camera focus and --focus or --focus-at exclude each other");
    }
    if (parameters.value(parameters.find("Use Focus Point")) != 0.0) {
        throw UsageError("--camera and --use-focus-point on exclude each other; use --focus-at");
    }
}

std::optional<Camera> CameraOptions::camera(const pictures::Picture& image, double pixelAspect,
                                            double downsample, bool focusElsewhere) const {
    if (!given()) return std::nullopt;
    const CameraWishes wishes = parseCamera(camera_);
    const std::string unit = sceneUnit_.empty() ? "m" : sceneUnit_;
    const double mapUnit = parseUnit(unit);
    const pictures::LensMetadata file = wishes.exif
                                            ? pictures::readLensMetadata(image.imageSpec, mapUnit)
                                            : pictures::LensMetadata{};

    const auto known = [](const std::optional<double>& wish, const std::optional<double>& said) {
        return wish ? *wish : said.value_or(0.0);
    };
    Camera camera;
    camera.unit = unit;
    camera.downsample = downsample;
    camera.largestRadius = kLargestBlurRadius / radiusEnlargement(pixelAspect);
    camera.width = image.display.width();
    camera.view.mapUnit = mapUnit;
    camera.view.pixelSize = pixelSize(wishes, file, image, pixelAspect).value_or(0.0);
    camera.view.lens = {.focalLength = known(wishes.focalLength, file.focalLength),
                        .fStop = known(wishes.fStop, file.fStop),
                        .focus = wishes.focus ? *wishes.focus * mapUnit : file.focus.value_or(0.0),
                        .breathing = wishes.breathing};
    if (focusElsewhere) camera.view.lens.focus = 0.0;
    requireComplete(wishes, camera, focusElsewhere, image.name);
    return camera;
}

}  // namespace cli
