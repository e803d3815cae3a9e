// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/LensMetadata.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace pictures {
namespace {

constexpr double kMillimetresPerMetre = 1000.0;
// Exif writes infinity as the largest integer over any denominator up to a hundred.
constexpr double kInfiniteMetres = 1e7;
constexpr double kFilmWidth = 36.0;
constexpr double kFilmHeight = 24.0;

// The first number of an attribute. The library itself converts neither signed integers nor
// vectors.
double firstNumber(const OIIO::ParamValue& attribute) {
    const OIIO::TypeDesc type = attribute.type();
    if (type == OIIO::TypeInt) return attribute.get_int();
    if (type.basetype == OIIO::TypeDesc::FLOAT) {
        return static_cast<double>(*static_cast<const float*>(attribute.data()));
    }
    return static_cast<double>(attribute.get_float());
}

// The first of these attributes that is above 0.
std::optional<double> firstOf(const OIIO::ImageSpec& imageSpec,
                              std::initializer_list<const char*> names) {
    for (const char* name : names) {
        const OIIO::ParamValue* found = imageSpec.find_attribute(name);
        if (found == nullptr) continue;
        const double value = firstNumber(*found);
        if (value > 0.0 && std::isfinite(value)) return value;
    }
    return std::nullopt;
}

std::optional<double> fStopOf(const OIIO::ImageSpec& imageSpec) {
    const auto given = firstOf(imageSpec, {"FNumber", "Exif:FNumber", "aperture", "fStop"});
    if (given) return given;
    // APEX counts stops from f/1, each a factor of the square root of 2.
    const auto stops = firstOf(imageSpec, {"Exif:ApertureValue"});
    return stops ? std::optional(std::exp2(*stops / 2.0)) : std::nullopt;
}

std::optional<double> focusOf(const OIIO::ImageSpec& imageSpec, double mapUnit) {
    const auto metres = firstOf(imageSpec, {"Exif:SubjectDistance", "SubjectDistance", "focus"});
    if (metres && *metres > kInfiniteMetres) return std::numeric_limits<double>::infinity();
    if (metres) return *metres * kMillimetresPerMetre;
    const auto distance = firstOf(imageSpec, {"focusDistance"});
    return distance ? std::optional(*distance * mapUnit) : std::nullopt;
}

}  // namespace

LensMetadata readLensMetadata(const OIIO::ImageSpec& imageSpec, double mapUnit) {
    return {.focalLength = firstOf(imageSpec, {"Exif:FocalLength", "focalLength",
                                               "effectiveFocalLength", "nominalFocalLength"}),
            .fStop = fStopOf(imageSpec),
            .focus = focusOf(imageSpec, mapUnit),
            .sensorWidth = firstOf(imageSpec, {"sensorWidth", "sensorOverallDimensions"}),
            .filmFocalLength = firstOf(imageSpec, {"Exif:FocalLengthIn35mmFilm"})};
}

double sensorWidthFromFilm(double focalLength, double filmFocalLength, double shape) {
    const double diagonal = std::hypot(kFilmWidth, kFilmHeight) * focalLength / filmFocalLength;
    return diagonal * shape / std::hypot(shape, 1.0);
}

}  // namespace pictures
