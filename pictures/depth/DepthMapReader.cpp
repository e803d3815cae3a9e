// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthMapReader.h"

#include <algorithm>
#include <cmath>

#include "pictures/Errors.h"
#include "pictures/Text.h"
#include "pictures/depth/DepthChannel.h"
#include "pictures/files/PictureReader.h"

namespace pictures {
namespace {

constexpr std::size_t kColours = 3;
constexpr std::size_t kAlphaPlace = 3;

// What to read: the depth among several channels, otherwise what the user named.
std::string depthText(const std::string& text, MapChannel channel) {
    if (channel == MapChannel::kAlpha) return text;
    const SourceName source = parseSourceName(text);
    const std::vector<ChannelPlace> channels = channelsOf(source.file);
    if (channels.size() == 1) return text;
    const auto found = findDepthChannel(channels, source.layer);
    return found ? source.file.string() + ":" + *found : text;
}

// Grey maps in colour files may have channels that differ by a rounding error.
bool isColour(const Picture& map) {
    constexpr float kTolerance = 0.01F;
    if (map.grey) return false;
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        const auto [least, most] = std::minmax({map.pixel(i)[0], map.pixel(i)[1], map.pixel(i)[2]});
        if (most - least > kTolerance * std::max(1.0F, std::fabs(most))) return true;
    }
    return false;
}

void warnAboutColour(const Picture& map, const MapControls& controls, Messages& messages) {
    if (controls.channelGiven || !isColour(map)) return;
    messages.warn(map.name +
                  " is a colour image; the mean of its colours is used as depth; name a channel "
                  "with FILE:CHANNEL or --depth-map-channel");
}

// Whole numbers as the file stores them, such as millimetres.
void restoreIntegers(Picture& map) {
    const int bits = worldBits(map.type);
    if (bits == 32) return;
    const float top = bits == 8 ? 255.0F : 65535.0F;
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        for (std::size_t c = 0; c < kColours; ++c) {
            map.pixel(i)[c] = std::round(map.pixel(i)[c] * top);
        }
    }
}

// Distances are the values before multiplication by alpha. Where alpha is 0 nothing is, and the
// effect would ignore the value that says so; a value that marks the sky means nothing in alpha.
void makeStraight(Picture& map) {
    for (std::size_t i = 0; map.hasAlpha && i < map.pixelCount(); ++i) {
        float* p = map.pixel(i);
        if (!std::isfinite(p[kAlphaPlace])) p[kAlphaPlace] = 1.0F;
        const float divisor = map.associated ? p[kAlphaPlace] : 1.0F;
        for (std::size_t c = 0; c < kColours; ++c) {
            p[c] = p[kAlphaPlace] == 0.0F ? kNothing : p[c] / divisor;
        }
        if (p[kAlphaPlace] == 0.0F) p[kAlphaPlace] = 1.0F;
    }
    map.associated = false;
}

bool holdsValuesBeyondOne(const DepthSource& source) {
    if (worldBits(source.picture.type) != 32) return false;
    for (std::size_t i = 0; i < source.picture.pixelCount(); ++i) {
        const double value = source.value(i);
        if (value > 1.0 && !isNothing(value, DepthKind::kNormalised)) return true;
    }
    return false;
}

DepthKind kindOf(const DepthSource& source, const DepthMapping& mapping) {
    if (mapping.kind) return *mapping.kind;
    if (mapping.found) return *mapping.found;
    if (source.controls.channel == MapChannel::kAlpha && !mapping.maps()) {
        return DepthKind::kNormalised;
    }
    if (namesDisparity(source.picture.greyName) ||
        namesDisparity(parseSourceName(source.picture.name).layer)) {
        return DepthKind::kDisparity;
    }
    if (mapping.maps() || holdsValuesBeyondOne(source)) return DepthKind::kDistance;
    return DepthKind::kNormalised;
}

// Alpha lies between 0 and 1 in every file.
void requireSuitableChannel(const DepthSource& source) {
    if (source.controls.channel != MapChannel::kAlpha) return;
    if (source.kind == DepthKind::kNormalised) return;
    throw UsageError(
        "--depth-map-channel alpha is taken as it is, as a normalised map; leave out "
        "the options for distances");
}

void markNothing(DepthSource& source) {
    Picture& map = source.picture;
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        source.range.add(source.value(i), source.kind);
        for (std::size_t c = 0; c < kColours; ++c) {
            float& value = map.pixel(i)[c];
            if (isNothing(static_cast<double>(value), source.kind)) value = kNothing;
        }
    }
}

void requireSome(const DepthSource& source, const DepthMapping& mapping) {
    const bool needsRange = source.kind != DepthKind::kNormalised && !mapping.near;
    if (!needsRange || mapping.ofShot || mapping.curve || source.range.any()) return;
    throw Failure(source.picture.name + " holds no " + depthKindName(source.kind) +
                  ", only values that mean nothing is there; use another map or --depth-kind");
}

std::string rangeText(const DepthRange& range) {
    if (!range.any()) return "nothing there";
    return numberText(range.least) + " to " + numberText(range.most);
}

void warnAboutValues(const std::string& name, DepthKind kind, const DepthRange& range,
                     const DepthMapping& mapping, Messages& messages) {
    if (!range.any()) return;
    if (kind == DepthKind::kNormalised) {
        if (range.least >= 0.0 && range.most <= 1.0) return;
        messages.warn(name +
                      " has values outside 0 to 1, which are clamped; for distances, add "
                      "--depth-kind distance");
    } else if (mapping.near && mapping.far) {
        const bool above = range.least >= std::max(*mapping.near, *mapping.far);
        const bool below = range.most <= std::min(*mapping.near, *mapping.far);
        if (!above && !below) return;
        messages.warn(name +
                      " has no values between --depth-near and --depth-far, so all of it is at one "
                      "depth");
    }
}

}  // namespace

double DepthSource::value(std::size_t pixel) const {
    const float* p = picture.pixel(pixel);
    if (controls.channel != MapChannel::kAverage) {
        return static_cast<double>(p[static_cast<std::size_t>(controls.channel) - 1]);
    }
    if (picture.grey) return static_cast<double>(p[0]);
    return static_cast<double>((p[0] + p[1] + p[2]) / 3.0F);
}

DepthSource readDepth(const std::string& text, Extent extent, const DepthMapping& mapping,
                      const MapControls& controls, Messages& messages) {
    DepthSource source;
    source.controls = controls;
    source.picture = readPicture(depthText(text, controls.channel), extent, kNothing);
    if (controls.channel != MapChannel::kAlpha) makeStraight(source.picture);
    warnAboutColour(source.picture, controls, messages);
    source.kind = kindOf(source, mapping);
    requireConsistent(mapping, source.kind);
    requireSuitableChannel(source);
    if (mapping.kind && *mapping.kind != DepthKind::kNormalised) restoreIntegers(source.picture);
    markNothing(source);
    requireSome(source, mapping);
    return source;
}

void tellDepth(const DepthSource& source, const DepthMapping& mapping, Messages& messages) {
    tellRange(source.picture.name, source.kind, source.range, mapping, messages);
}

void tellRange(const std::string& name, DepthKind kind, const DepthRange& range,
               const DepthMapping& mapping, Messages& messages) {
    std::string text = name + ": " + depthKindName(kind) + ", " + rangeText(range);
    if (kind == DepthKind::kDistance && !mapping.maps()) text += " (linear in 1/distance)";
    if (range.nothing > 0) {
        text += ", " + counted(range.nothing, "pixel") + " without depth count as far";
    }
    messages.note(text);
    warnAboutValues(name, kind, range, mapping, messages);
}

Picture applyCurve(DepthSource source, const DepthCurve& curve) {
    Picture& map = source.picture;
    const bool alpha = source.controls.channel == MapChannel::kAlpha;
    const std::size_t first = alpha ? kAlphaPlace : 0;
    const std::size_t end = alpha ? kChannels : kColours;
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        for (std::size_t c = first; c < end; ++c) {
            map.pixel(i)[c] = curve(static_cast<double>(map.pixel(i)[c]));
        }
    }
    if (source.kind != DepthKind::kNormalised) map.type = SampleType::kFloat;
    return std::move(source.picture);
}

}  // namespace pictures
