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

Repairs repair(Picture& picture) {
    Repairs repairs;
    for (float& value : picture.pixels) {
        if (std::isfinite(value)) continue;
        value = std::isnan(value) ? 0.0F : std::copysign(kLargestHalf, value);
        ++repairs.notFinite;
    }
    if (!picture.associated || !picture.hasAlpha) return repairs;
    for (std::size_t i = 0; i < picture.pixelCount(); ++i) {
        const float* p = picture.pixel(i);
        const bool light = p[0] != 0.0F || p[1] != 0.0F || p[2] != 0.0F;
        if (p[3] == 0.0F && light) ++repairs.lightWithoutAlpha;
    }
    return repairs;
}

}  // namespace pictures
