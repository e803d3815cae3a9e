// SPDX-License-Identifier: Apache-2.0
#include "occlusion/Slabs.h"

#include <algorithm>
#include <utility>

namespace occlusion {
namespace {

// Of the distance to the next bound.
constexpr float kSoftPart = 0.3F;

float smoothStep(float x) {
    const float c = std::clamp(x, 0.0F, 1.0F);
    return c * c * (3.0F - 2.0F * c);
}

}  // namespace

Slabs::Slabs(std::vector<float> bounds) : bounds_(std::move(bounds)) {
    for (std::size_t i = 0; i < bounds_.size(); ++i) {
        const float below = i == 0 ? 0.0F : bounds_[i - 1];
        const float above = i + 1 == bounds_.size() ? 1.0F : bounds_[i + 1];
        halfWidths_.push_back(kSoftPart * std::min(bounds_[i] - below, above - bounds_[i]));
    }
}

float Slabs::nearer(std::size_t slab, float nearness) const {
    if (slab >= bounds_.size()) return 0.0F;
    const float away = nearness - bounds_[slab];
    const float width = halfWidths_[slab];
    if (away >= width) return 1.0F;
    return away <= -width ? 0.0F : smoothStep(0.5F + away / (2.0F * width));
}

float Slabs::share(std::size_t slab, float nearness) const {
    const float fromHere = slab == 0 ? 1.0F : nearer(slab - 1, nearness);
    return fromHere - nearer(slab, nearness);
}

}  // namespace occlusion
