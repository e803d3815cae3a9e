// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthMapReader.h"

#include <algorithm>
#include <cmath>

#include "pictures/Errors.h"
#include "pictures/PictureReader.h"
#include "pictures/Text.h"
#include "pictures/WorldPixels.h"

namespace pictures {
namespace {

bool isSky(float distance) {
    return !(std::fabs(distance) < kSkyDistance);
}

// Calls use(value) for each colour value of the map.
template <class Use>
void forEachColour(Picture& map, Use use) {
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        for (std::size_t c = 0; c < 3; ++c) use(map.pixel(i)[c]);
    }
}

// Maps distances to 0 (far) to 1 (near), linearly in Z or in 1/Z.
class Curve {
public:
    Curve(double near, double far, bool inverse)
        : inverse_(inverse), near_(scale(near)), far_(scale(far)) {}

    float operator()(double distance) const {
        if (near_ == far_) return 1.0F;  // everything is at one distance
        const double share = (scale(distance) - far_) / (near_ - far_);
        return static_cast<float>(std::clamp(share, 0.0, 1.0));
    }

private:
    // Behind the camera 1/Z changes its sign, so such points count as nearest.
    double scale(double distance) const {
        if (!inverse_) return distance;
        return distance > 0.0 ? 1.0 / distance : std::numeric_limits<double>::max();
    }

    bool inverse_;
    double near_;
    double far_;
};

std::string rangeText(const DepthRange& range) {
    return numberText(range.least) + " to " + numberText(range.most);
}

void warnAboutDistances(const Picture& map, const DepthRange& range, Messages& messages) {
    if (worldBits(map.type) != 32) return;
    const bool outside = range.any() && (range.least < 0.0 || range.most > 1.0);
    if (!outside && range.sky == 0) return;
    messages.warn(map.name + " has depths outside 0 to 1 (" +
                  (range.any() ? rangeText(range) : "only sky") +
                  (range.any() && range.sky > 0 ? ", and sky" : "") +
                  "); for distances, add --depth-auto, or --depth-near and --depth-far");
}

// A value for the sky means nothing in alpha: non-finite alphas become opaque.
void repairAlpha(Picture& map) {
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        if (!std::isfinite(map.pixel(i)[3])) map.pixel(i)[3] = 1.0F;
    }
}

// Distances are the values before multiplication by alpha.
void makeStraight(Picture& map) {
    for (std::size_t i = 0; map.associated && i < map.pixelCount(); ++i) {
        float* p = map.pixel(i);
        for (std::size_t c = 0; p[3] != 0.0F && c < 3; ++c) p[c] /= p[3];
    }
    map.associated = false;
}

void requireRange(const std::string& text, const DepthMapping& mapping, const DepthRange& range) {
    if (!mapping.automatic) return;
    if (!range.any()) {
        throw Failure(text + " shows only sky, no distances; use --depth-near and --depth-far");
    }
    if (mapping.inverse && range.least <= 0.0) {
        throw Failure(text + " has distances down to " + numberText(range.least) +
                      ", which have no 1/Z; use --depth-near and --depth-far");
    }
}

}  // namespace

DepthRange depthRange(const Picture& map) {
    DepthRange range;
    const std::size_t colours = map.grey ? 1 : 3;
    for (std::size_t i = 0; i < map.pixelCount(); ++i) {
        for (std::size_t c = 0; c < colours; ++c) {
            const float value = map.pixel(i)[c];
            if (isSky(value)) {
                ++range.sky;
                continue;
            }
            range.least = std::min(range.least, static_cast<double>(value));
            range.most = std::max(range.most, static_cast<double>(value));
        }
    }
    return range;
}

void applyMapping(Picture& map, const DepthMapping& mapping, const DepthRange& range) {
    if (!mapping.maps()) {
        forEachColour(map, [](float& value) { value = isSky(value) ? 0.0F : value; });
        return;
    }
    const Curve curve(mapping.near.value_or(range.least), mapping.far.value_or(range.most),
                      mapping.inverse);
    forEachColour(map, [&](float& value) {
        value = isSky(value) ? 0.0F : curve(static_cast<double>(value));
    });
    map.type = SampleType::kFloat;
}

DepthMap readDepthMap(const std::string& text, const DepthMapping& mapping, Messages& messages) {
    constexpr float kNothingThere = std::numeric_limits<float>::infinity();
    Picture map = readPicture(text, Extent::kDisplay, kNothingThere);
    repairAlpha(map);
    makeStraight(map);
    DepthMap depth;
    depth.range = depthRange(map);
    requireRange(text, mapping, depth.range);
    if (!mapping.maps()) warnAboutDistances(map, depth.range, messages);
    applyMapping(map, mapping, depth.range);
    depth.world = makeWorld(map, worldBits(map.type));
    return depth;
}

}  // namespace pictures
