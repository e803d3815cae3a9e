// SPDX-License-Identifier: Apache-2.0
#include "cli/options/FocusOptions.h"

#include <cmath>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"

namespace cli {
namespace {

using pictures::DepthKind;
using pictures::numberText;

constexpr const char* kFocalDistance = "Focal Distance";
constexpr const char* kFocusAt = "--focus-at";

// What --focus takes for a map of this kind, if it isn't `value`.
std::optional<std::string> wantedInstead(double value, DepthKind kind) {
    switch (kind) {
        case DepthKind::kDistance:
            if (value > 0.0) return std::nullopt;
            return "a distance above 0";
        case DepthKind::kDisparity:
            if (value >= 0.0 && std::isfinite(value)) return std::nullopt;
            return "a disparity of at least 0";
        case DepthKind::kNormalised:
            break;
    }
    if (value >= 0.0 && value <= 1.0) return std::nullopt;
    return "a value from 0 to 1";
}

// The index of the pixel at a place on one axis; -1 if there is none.
int pixelAt(double place, bool percent, int size) {
    if (percent && place == 100.0) return size - 1;
    const double pixel = std::floor(percent ? place / 100.0 * size : place);
    return pixel >= 0.0 && pixel < size ? static_cast<int>(pixel) : -1;
}

struct Pixel {
    int x;
    int y;
};

Pixel requirePixel(const std::string& option, const std::string& text,
                   const pictures::Size& image) {
    const Point point = parsePoint(option, text);
    const Pixel pixel{pixelAt(point.x, point.percent, image.width),
                      pixelAt(point.y, point.percent, image.height)};
    if (pixel.x >= 0 && pixel.y >= 0) return pixel;
    throw UsageError(option + " " + text + " is outside the image, which has " +
                     pictures::sizeText(image) + " pixels");
}

void setFocus(headless::ParameterSet& parameters, double position, bool inverted,
              const std::string& place, pictures::Messages& messages) {
    const double distance = pictures::focalDistance(position, inverted);
    parameters.set(kFocalDistance, distance);
    const std::string text =
        "focus at " + place + ": " + kFocalDistance + " " + numberText(distance);
    if (position >= 0.0 && position <= 1.0) {
        messages.note(text);
    } else {
        messages.warn(text + ", beyond the range of the map, so nothing is quite sharp");
    }
}

}  // namespace

pictures::DepthSample depthAt(const std::string& option, const std::string& text,
                              pictures::MapPlacement placement, const pictures::DepthSource& source,
                              const pictures::DepthCurve& curve, const pictures::Size& image) {
    const Pixel pixel = requirePixel(option, text, image);
    return pictures::sampleDepth(source, curve, image, placement, pixel.x, pixel.y);
}

void FocusOptions::addTo(CLI::App& app, const std::string& group) {
    app.add_option("--focus", focus_, "focus on this distance, disparity or value of the map")
        ->type_name("D")
        ->group(group);
    app.add_option("--focus-at", focusAt_,
                   "focus on what the map shows at this pixel of the image: X,Y or X%,Y%")
        ->type_name("X,Y")
        ->group(group);
}

void FocusOptions::check(const headless::ParameterSet& parameters,
                         const ParameterOptions& controls) const {
    if (!any()) return;
    if (!focus_.empty()) parseDistance("--focus", focus_);
    if (!focusAt_.empty()) parsePoint("--focus-at", focusAt_);
    if (!focus_.empty() && !focusAt_.empty()) {
        throw UsageError("--focus and --focus-at exclude each other; leave out one");
    }
    const std::string given = focus_.empty() ? "--focus-at" : "--focus";
    if (controls.given("focal-distance")) {
        throw UsageError(given + " sets the focal distance itself; leave out --focal-distance");
    }
    if (parameters.value(parameters.find("Use Focus Point")) != 0.0) {
        throw UsageError(given + " and --use-focus-point on exclude each other; leave out one");
    }
}

void FocusOptions::requirePossible(DepthKind kind,
                                   const std::optional<pictures::Size>& image) const {
    if (image && !focusAt_.empty()) requirePixel(kFocusAt, focusAt_, *image);
    if (focus_.empty()) return;
    const auto wanted = wantedInstead(parseDistance("--focus", focus_), kind);
    if (!wanted) return;
    throw UsageError("--focus takes " + *wanted + " for this map, which is read as " +
                     pictures::depthKindName(kind) + ", not " + focus_);
}

std::optional<double> FocusOptions::valueGiven() const {
    if (focus_.empty()) return std::nullopt;
    return parseDistance("--focus", focus_);
}

std::optional<double> FocusOptions::valueAt(pictures::MapPlacement placement,
                                            const pictures::DepthSource& source,
                                            const std::optional<pictures::Size>& image) const {
    if (focusAt_.empty() || !image) return std::nullopt;
    const pictures::DepthCurve curve(source.kind, {}, source.range, false);
    return depthAt(kFocusAt, focusAt_, placement, source, curve, *image).value;
}

void FocusOptions::apply(headless::ParameterSet& parameters, const pictures::DepthSource& source,
                         const pictures::DepthCurve& curve, const std::optional<double>& found,
                         pictures::Messages& messages) const {
    const bool inverted = source.controls.inverted;
    if (const auto value = valueGiven()) {
        setFocus(parameters, curve.position(*value), inverted, focus_, messages);
    }
    if (!found) return;
    const bool nothing = pictures::isNothing(*found, source.kind);
    const std::string value = nothing ? "far, without depth" : numberText(*found);
    setFocus(parameters, curve.position(*found), inverted, focusAt_ + " (" + value + ")", messages);
}

}  // namespace cli
