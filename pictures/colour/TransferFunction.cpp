// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/TransferFunction.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace pictures {
namespace {

constexpr double kLeastGamma = 0.1;
constexpr double kMostGamma = 10.0;

double unchanged(double value, double) {
    return value;
}

// IEC 61966-2-1.
double decodeSrgb(double value, double) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}
double encodeSrgb(double light, double) {
    return light <= 0.0031308 ? light * 12.92 : 1.055 * std::pow(light, 1.0 / 2.4) - 0.055;
}

// ITU-R BT.709, with the constants of BT.2020 in full precision, at which the curve has no step.
constexpr double kAlpha709 = 1.09929682680944;
constexpr double kBeta709 = 0.018053968510807;
double decode709(double value, double) {
    return value < 4.5 * kBeta709 ? value / 4.5
                                  : std::pow((value + kAlpha709 - 1.0) / kAlpha709, 1.0 / 0.45);
}
double encode709(double light, double) {
    return light < kBeta709 ? light * 4.5 : kAlpha709 * std::pow(light, 0.45) - (kAlpha709 - 1.0);
}

double decodeGamma(double value, double gamma) {
    return std::pow(value, gamma);
}
double encodeGamma(double light, double gamma) {
    return std::pow(light, 1.0 / gamma);
}

// Kodak, "Conversion of 10-bit Log Film Data To 8-bit Linear or Video Data for The Cineon Digital
// Film System", 1995: 0.002 printing density per code at a film gamma of 0.6; code 95 is black, 685
// white.
constexpr double kCodesPerDecade = 0.6 / 0.002;
constexpr double kWhiteCode = 685.0;
constexpr double kTopCode = 1023.0;
double exposureOfCode(double code) {
    return std::pow(10.0, (code - kWhiteCode) / kCodesPerDecade);
}
double decodeKodakLog(double value, double) {
    const double black = exposureOfCode(95.0);
    return (exposureOfCode(std::max(value, 0.0) * kTopCode) - black) / (1.0 - black);
}
double encodeKodakLog(double light, double) {
    const double black = exposureOfCode(95.0);
    const double exposure = std::max(light * (1.0 - black) + black, exposureOfCode(0.0));
    return (kCodesPerDecade * std::log10(exposure) + kWhiteCode) / kTopCode;
}

// SMPTE ST 2084. Reference white is 203 cd/m2 (ITU-R BT.2408).
constexpr double kM1 = 2610.0 / 16384.0;
constexpr double kM2 = 2523.0 / 4096.0 * 128.0;
constexpr double kC1 = 3424.0 / 4096.0;
constexpr double kC2 = 2413.0 / 4096.0 * 32.0;
constexpr double kC3 = 2392.0 / 4096.0 * 32.0;
constexpr double kPeakLight = 10000.0 / 203.0;
double decodePq(double value, double) {
    const double root = std::pow(std::min(value, 1.0), 1.0 / kM2);
    return kPeakLight * std::pow(std::max(root - kC1, 0.0) / (kC2 - kC3 * root), 1.0 / kM1);
}
double encodePq(double light, double) {
    // The definition doesn't map 0 to 0 but to 7e-7, which would be a step in the odd symmetry.
    if (light == 0.0) return 0.0;
    const double power = std::pow(std::min(light / kPeakLight, 1.0), kM1);
    return std::pow((kC1 + kC2 * power) / (1.0 + kC3 * power), kM2);
}

// ITU-R BT.2100, HLG, as light of the scene. Reference white is the signal 0.75 (ITU-R BT.2408).
constexpr double kHlgA = 0.17883277;
constexpr double kHlgB = 1.0 - 4.0 * kHlgA;
const double kHlgC = 0.5 - kHlgA * std::log(4.0 * kHlgA);
double sceneLightOfHlg(double value) {
    if (value <= 0.5) return value * value / 3.0;
    return (std::exp((value - kHlgC) / kHlgA) + kHlgB) / 12.0;
}
double decodeHlg(double value, double) {
    return sceneLightOfHlg(value) / sceneLightOfHlg(0.75);
}
double encodeHlg(double light, double) {
    const double scene = light * sceneLightOfHlg(0.75);
    if (scene <= 1.0 / 12.0) return std::sqrt(3.0 * scene);
    return kHlgA * std::log(12.0 * scene - kHlgB) + kHlgC;
}

// The exponent of "Gamma2.2".
std::optional<double> gammaOf(std::string_view name) {
    constexpr std::string_view kPrefix = "gamma";
    if (!sameName(name.substr(0, kPrefix.size()), kPrefix)) return std::nullopt;
    const std::string_view number = name.substr(kPrefix.size());
    double gamma = 0.0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), gamma);
    const bool whole = error == std::errc{} && end == number.data() + number.size();
    if (!whole || !(gamma >= kLeastGamma && gamma <= kMostGamma)) return std::nullopt;
    return gamma;
}

}  // namespace

std::optional<TransferFunction> TransferFunction::named(std::string_view name) {
    static const TransferFunction kFunctions[] = {
        {"linear", unchanged, unchanged, true}, {"sRGB", decodeSrgb, encodeSrgb, true},
        {"Rec709", decode709, encode709, true}, {"KodakLog", decodeKodakLog, encodeKodakLog, false},
        {"PQ", decodePq, encodePq, true},       {"HLG", decodeHlg, encodeHlg, true},
    };
    for (const TransferFunction& function : kFunctions) {
        if (sameName(name, function.name_)) return function;
    }
    const auto gamma = gammaOf(name);
    if (!gamma) return std::nullopt;
    if (*gamma == 1.0) return kFunctions[0];
    return TransferFunction(gammaName(*gamma), decodeGamma, encodeGamma, true, *gamma);
}

std::string TransferFunction::knownNames() {
    return "linear, sRGB, Rec709, GammaNUMBER (such as Gamma2.2), KodakLog, PQ, HLG";
}

double TransferFunction::evaluate(Curve curve, double value) const {
    if (odd_ && value < 0.0) return -curve(-value, gamma_);
    return curve(value, gamma_);
}

double TransferFunction::decode(double value) const {
    return evaluate(toLight_, value);
}

double TransferFunction::encode(double light) const {
    return evaluate(fromLight_, light);
}

std::string gammaName(double exponent) {
    char text[32];
    std::snprintf(text, sizeof text, "Gamma%.4g", exponent);
    return text;
}

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](unsigned char x, unsigned char y) {
        return std::tolower(x) == std::tolower(y);
    });
}

}  // namespace pictures
