// SPDX-License-Identifier: Apache-2.0
#include "cli/render/ExposureCheck.h"

#include <algorithm>
#include <cmath>

#include "cli/Errors.h"
#include "cli/Numbers.h"
#include "pictures/Text.h"

namespace cli {
namespace {

// The curve is an exponential of this argument. e^35 is about 2^50: next to it, a value of 1 is
// lost in the 53 bits of a double. e^700 is close to the largest double.
constexpr double kNoisyArgument = 35.0;
constexpr double kLostArgument = 700.0;

}  // namespace

std::optional<double> suitableExposure(double exposure, double threshold, double largest) {
    const double span = largest - threshold;
    if (exposure <= 0.0 || span <= 0.0 || exposure * span <= kNoisyArgument) return std::nullopt;
    const double limit = kNoisyArgument / span;
    // In tenths, as the slider shows them; in two significant digits if a tenth is already too
    // much.
    const double step = limit >= 0.1 ? 0.1 : std::pow(10.0, std::floor(std::log10(limit)) - 1.0);
    const double suitable = std::floor(limit / step) * step;
    constexpr double kSmallestSetting = 1.0 / 65536.0;
    return suitable < kSmallestSetting ? 0.0 : suitable;
}

void leaveOutExposure(headless::ParameterSet& parameters, const std::string& picture,
                      pictures::Messages& messages) {
    const int exposure = parameters.find("Exposure");
    const double usual = parameters.value(exposure);
    if (usual == 0.0) return;
    parameters.set(exposure, 0.0);
    messages.note(picture + " is rendered in linear light with Exposure 0; the default of " +
                  pictures::numberText(usual) + " suits display-referred images");
}

void checkExposure(const headless::ParameterSet& parameters, A_Time time, double largestColour,
                   bool force, pictures::Messages& messages) {
    const auto control = [&](const char* label) {
        return parameters.value(parameters.find(label), time);
    };
    if (control("Blur Radius") == 0.0) return;  // the image is copied
    const double exposure = control("Exposure");
    const double threshold = control("Threshold");
    const auto suitable = suitableExposure(exposure, threshold, largestColour);
    if (!suitable) return;
    const bool lost = exposure * (largestColour - threshold) > kLostArgument;
    const std::string text =
        "Exposure " + pictures::numberText(exposure) + " is too high for colours up to " +
        pictures::numberText(largestColour) + ": " +
        (lost ? "the image would be lost" : "rounding noise will drown dark areas") +
        "; use at most --exposure " + pictures::numberText(*suitable);
    if (lost && !force) throw Failure(text + ", or write it nevertheless with --force");
    messages.warn(text);
}

}  // namespace cli
