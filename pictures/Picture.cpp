// SPDX-License-Identifier: Apache-2.0
#include "pictures/Picture.h"

#include <algorithm>
#include <cmath>

namespace pictures {
namespace {

constexpr float kLargestHalf = 65504.0F;

}  // namespace

const char* sampleTypeName(SampleType type) {
    switch (type) {
        case SampleType::kUInt8:
            return "8 bits";
        case SampleType::kUInt16:
            return "16 bits";
        case SampleType::kHalf:
            return "half";
        case SampleType::kFloat:
            break;
    }
    return "float";
}

int worldBits(SampleType type) {
    if (type == SampleType::kUInt8) return 8;
    return type == SampleType::kUInt16 ? 16 : 32;
}

Window enclosing(const Window& a, const Window& b) {
    if (a.empty()) return b;
    if (b.empty()) return a;
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

Repairs& Repairs::operator+=(const Repairs& other) {
    notFinite += other.notFinite;
    lightWithoutAlpha += other.lightWithoutAlpha;
    return *this;
}

Repairs repairPixels(std::span<float> rgba, bool associated) {
    Repairs repairs;
    for (float& value : rgba) {
        if (std::isfinite(value)) continue;
        value = std::isnan(value) ? 0.0F : std::copysign(kLargestHalf, value);
        ++repairs.notFinite;
    }
    for (std::size_t i = 0; associated && i < rgba.size(); i += kChannels) {
        const bool light = rgba[i] != 0.0F || rgba[i + 1] != 0.0F || rgba[i + 2] != 0.0F;
        if (rgba[i + 3] == 0.0F && light) ++repairs.lightWithoutAlpha;
    }
    return repairs;
}

Repairs repair(Picture& picture) {
    return repairPixels(picture.pixels, picture.associated && picture.hasAlpha);
}

}  // namespace pictures
