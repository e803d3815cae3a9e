// SPDX-License-Identifier: Apache-2.0
#include "cli/render/PixelAspect.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "pictures/Text.h"

namespace cli {
namespace {

using pictures::numberText;

constexpr double kTolerance = 0.01;  // relative

// Of a control that doesn't vary in time.
std::optional<double> constant(const headless::ParameterSet& parameters, const char* label) {
    const int index = parameters.find(label);
    if (parameters.animated(index)) return std::nullopt;
    return parameters.value(index);
}

double largestRadius(const headless::ParameterSet& parameters) {
    const auto& keys = parameters.keys(parameters.find("Blur Radius"));
    return std::ranges::max(keys, {}, &headless::Keyframe::value).value;
}

// Where the axis lies that Deform squeezes above 0; the other one is squeezed below 0.
enum class SqueezedAxis { kWidth, kHeight, kOblique };

SqueezedAxis squeezedAxis(std::optional<double> degrees) {
    if (!degrees) return SqueezedAxis::kOblique;
    const double quarter = std::fabs(std::remainder(*degrees, 180.0));
    if (quarter == 0.0) return SqueezedAxis::kWidth;
    return quarter == 90.0 ? SqueezedAxis::kHeight : SqueezedAxis::kOblique;
}

// Whether Deform squeezes the aperture along the image's axes, and only by what is set here.
bool canSqueeze(const headless::ParameterSet& parameters, double radius) {
    const bool shape = parameters.layer(parameters.find("Custom Blur Shape")) != nullptr;
    const bool oblique = squeezedAxis(constant(parameters, "Rotation")) == SqueezedAxis::kOblique;
    const auto& info = parameters.info(parameters.find("Blur Radius"));
    return !shape && !oblique && constant(parameters, "Deform") == 0.0 && radius <= info.validMax;
}

bool inRange(const headless::ParameterSet& parameters, double deform) {
    const auto& info = parameters.info(parameters.find("Deform"));
    return deform >= info.validMin && deform <= info.validMax;
}

// The nearest whole ratio, by which the effect itself squeezes the aperture.
double wholeRatio(double aspect) {
    return std::max(1.0, std::round(aspect));
}

bool isWhole(double aspect) {
    return std::fabs(aspect / wholeRatio(aspect) - 1.0) <= kTolerance;
}

}  // namespace

double radiusEnlargement(double aspect) {
    return isWhole(aspect) ? 1.0 : std::max(1.0, 1.0 / aspect);
}

PF_RationalScale applyPixelAspect(headless::ParameterSet& parameters, A_Time time, double aspect,
                                  const std::string& image, pictures::Messages& messages) {
    const double whole = wholeRatio(aspect);
    const PF_RationalScale ratio{static_cast<A_long>(whole), 1};
    if (isWhole(aspect)) return ratio;

    // A circle is the same at any angle.
    const bool shape = parameters.layer(parameters.find("Custom Blur Shape")) != nullptr;
    if (!shape && constant(parameters, "Roundness") == 1.0 &&
        constant(parameters, "Deform") == 0.0) {
        parameters.set(parameters.find("Rotation"), 0.0);
    }

    const bool wide = aspect > 1.0;
    const double squeeze = wide ? 1.0 - 1.0 / aspect : 1.0 - aspect;
    const bool above = squeezedAxis(constant(parameters, "Rotation")) ==
                       (wide ? SqueezedAxis::kWidth : SqueezedAxis::kHeight);
    const double deform = above ? squeeze : -squeeze;
    const double enlargement = radiusEnlargement(aspect);
    if (!canSqueeze(parameters, largestRadius(parameters) * enlargement) ||
        !inRange(parameters, deform)) {
        messages.warn("the pixels of " + image + " are " + numberText(aspect) +
                      " times as wide as high; with this aperture only whole ratios are possible, "
                      "so it is blurred as if they were " +
                      numberText(whole));
        return ratio;
    }
    parameters.set(parameters.find("Deform"), deform);
    const int blurRadius = parameters.find("Blur Radius");
    parameters.changeValues(blurRadius, [&](double radius) { return radius * enlargement; });
    messages.note(
        "the pixels of " + image + " are " + numberText(aspect) +
        " times as wide as high: the aperture is squeezed to match, with Deform " +
        numberText(deform) +
        (wide ? "" : " and Blur Radius " + numberText(parameters.value(blurRadius, time))));
    return {1, 1};
}

}  // namespace cli
