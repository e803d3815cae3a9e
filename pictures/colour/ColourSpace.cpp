// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/ColourSpace.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "pictures/colour/TransferFunction.h"

namespace pictures {
namespace {

constexpr std::array<double, 8> kPrimariesOfSrgb{0.64, 0.33, 0.30,   0.60,
                                                 0.15, 0.06, 0.3127, 0.3290};

template <class Numbers>
bool arePrimariesOfSrgb(const Numbers& numbers) {
    return std::equal(kPrimariesOfSrgb.begin(), kPrimariesOfSrgb.end(), std::begin(numbers),
                      [](double a, double b) { return std::fabs(a - b) < 1e-3; });
}

// Sets what the file says; the empty name says nothing.
void say(ColourSpace& space, const std::string& name) {
    if (name.empty()) return;
    space.name = name;
    space.assumed = false;
}

// Logarithmic film scans have 10 bits, and often a header that leaves the function open.
bool mayBeFilmScan(const OIIO::ImageSpec& imageSpec, const std::string& format) {
    return format == "cineon" ||
           (format == "dpx" && imageSpec.get_int_attribute("oiio:BitsPerSample") == 10);
}

// What a format's definition or common use implies.
ColourSpace impliedSpace(const OIIO::ImageSpec& imageSpec, const std::string& format) {
    ColourSpace space;
    space.format = format;
    space.assumed = format != "openexr" && format != "hdr";
    const bool light = !space.assumed || imageSpec.format.is_floating_point();
    space.name = light ? "linear" : "sRGB";
    if (mayBeFilmScan(imageSpec, format)) space.name = "KodakLog";
    space.implied = space.name;
    return space;
}

// The function of a DPX file (SMPTE 268M), where the image library doesn't name it.
std::string dpxFunction(const std::string& transfer) {
    if (transfer == "Printing density") return "KodakLog";
    if (transfer == "Z depth linear") return "linear";
    for (const char* video : {"Unspecified video", "SMPTE 274M", "ITU-R", "NTSC", "PAL"}) {
        if (transfer.starts_with(video)) return "Rec709";
    }
    return {};
}

// Names such as lin_ap1_scene or g22_rec709: function, primaries, and whether scene or display.
// Empty for other names.
std::vector<std::string> interopParts(const std::string& name) {
    std::vector<std::string> parts(1);
    for (const char c : name) {
        if (c == '_') {
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    return parts.size() >= 2 && parts.size() <= 3 ? parts : std::vector<std::string>{};
}

std::string interopFunction(const std::string& part) {
    constexpr std::array<std::array<const char*, 2>, 8> kFunctions{{{"lin", "linear"},
                                                                    {"srgb", "sRGB"},
                                                                    {"g18", "Gamma1.8"},
                                                                    {"g22", "Gamma2.2"},
                                                                    {"g24", "Gamma2.4"},
                                                                    {"g26", "Gamma2.6"},
                                                                    {"pq", "PQ"},
                                                                    {"hlg", "HLG"}}};
    for (const auto& [id, function] : kFunctions) {
        if (part == id) return function;
    }
    return {};
}

// Sets the space to a name that the file or the image library gives.
void sayName(ColourSpace& space, const std::string& name) {
    const std::vector<std::string> parts = interopParts(name);
    const std::string function = parts.empty() ? "" : interopFunction(parts[0]);
    if (function.empty()) {
        say(space, name);
        return;
    }
    say(space, function);
    if (parts[1] != "rec709" && parts[1] != "srgb") space.primaries = parts[1];
}

// Radiance's GAMMA, which the image library reports as its inverse, rounded to hundredths.
std::string hdrFunction(const OIIO::ImageSpec& imageSpec) {
    const double inverse = imageSpec.get_float_attribute("oiio:Gamma", 1.0F);
    return inverse > 0.0 && inverse != 1.0 ? gammaName(std::round(10.0 / inverse) / 10.0) : "";
}

// What the image library reports. Its names for PNM, and where it finds nothing in the file, are
// its own assumptions.
void sayReported(ColourSpace& space, const OIIO::ImageSpec& imageSpec) {
    const std::string reported = imageSpec.get_string_attribute("oiio:ColorSpace");
    if (space.format == "pnm" || space.format == "cineon") return;
    if (space.format == "hdr") return say(space, hdrFunction(imageSpec));
    if (space.format == "dpx") {
        say(space, dpxFunction(imageSpec.get_string_attribute("dpx:Transfer")));
    }
    if (imageSpec.get_int_attribute("Exif:ColorSpace") == 1) say(space, "sRGB");
    if (!reported.empty() && !sameName(reported, space.name)) sayName(space, reported);
}

void sayProfile(ColourSpace& space, const OIIO::ImageSpec& imageSpec) {
    const OIIO::ParamValue* value = imageSpec.find_attribute("ICCProfile");
    if (value == nullptr) return;
    space.icc = readIccProfile({static_cast<const unsigned char*>(value->data()),
                                static_cast<std::size_t>(value->datasize())});
    space.profile = imageSpec.get_string_attribute("ICCProfile:profile_description", "unnamed");
    if (!space.icc.primariesOfSrgb) space.primaries = "profile \"" + space.profile + "\"";
    if (space.icc.transfer.empty()) {
        space.name = space.implied;
        space.assumed = true;
    } else {
        say(space, space.icc.transfer);
    }
}

// The codes of ITU-T H.273.
std::string cicpFunction(unsigned char code) {
    switch (code) {
        case 1:
        case 6:
        case 14:
        case 15:
            return "Rec709";
        case 4:
            return "Gamma2.2";
        case 5:
            return "Gamma2.8";
        case 8:
            return "linear";
        case 13:
            return "sRGB";
        case 16:
            return "PQ";
        case 18:
            return "HLG";
        default:
            return "cICP transfer function " + std::to_string(code);
    }
}

std::string cicpPrimaries(unsigned char code) {
    switch (code) {
        case 1:
        case 2:  // unspecified
            return {};
        case 9:
            return "BT.2020";
        case 12:
            return "Display P3";
        default:
            return "cICP primaries " + std::to_string(code);
    }
}

void sayChunks(ColourSpace& space, const PngColour& png) {
    if (png.srgb) return say(space, "sRGB");
    if (png.gamma) say(space, *png.gamma == 1.0 ? "linear" : gammaName(*png.gamma));
    if (png.primaries && !arePrimariesOfSrgb(*png.primaries)) space.primaries = "cHRM";
}

void sayCicp(ColourSpace& space, const PngColour& png) {
    if (!png.cicp) return;
    say(space, cicpFunction((*png.cicp)[1]));
    space.primaries = cicpPrimaries((*png.cicp)[0]);
    space.profile.clear();
}

void sayChromaticities(ColourSpace& space, const OIIO::ImageSpec& imageSpec) {
    const OIIO::ParamValue* value = imageSpec.find_attribute("chromaticities");
    if (value == nullptr || value->type() != OIIO::TypeDesc(OIIO::TypeDesc::FLOAT, 8)) return;
    const std::span<const float> numbers(static_cast<const float*>(value->data()), 8);
    space.primaries = arePrimariesOfSrgb(numbers) ? "" : "chromaticities";
}

}  // namespace

ColourSpace colourSpaceOf(const OIIO::ImageSpec& imageSpec, const std::string& format,
                          const PngColour& png) {
    ColourSpace space = impliedSpace(imageSpec, format);
    sayReported(space, imageSpec);
    sayName(space, imageSpec.get_string_attribute("colorInteropID"));
    sayChunks(space, png);
    sayChromaticities(space, imageSpec);
    sayProfile(space, imageSpec);
    sayCicp(space, png);
    return space;
}

ColourSpace namedColourSpace(const std::string& name, const ColourSpace& ofFile) {
    ColourSpace space;
    space.name = space.implied = name;
    space.assumed = false;
    space.format = ofFile.format;
    return space;
}

}  // namespace pictures
