// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthMapping.h"

#include <algorithm>
#include <cmath>

#include "pictures/Errors.h"

namespace pictures {
namespace {

// Infinity as renderers write it into files that can't hold it, such as 1e10.
constexpr double kSkyDistance = 1e9;

// Throws UsageError unless near and far, where given, form a range.
void requireRange(const DepthMapping& mapping, DepthKind kind) {
    if (mapping.near.has_value() != mapping.far.has_value()) {
        throw UsageError("--depth-near and --depth-far belong together; give both");
    }
    if (!mapping.near) return;
    if (kind == DepthKind::kDisparity) {
        if (*mapping.near > *mapping.far && std::isfinite(*mapping.near)) return;
        throw UsageError("--depth-near must be more than --depth-far for a disparity map");
    }
    if (*mapping.near >= *mapping.far) {
        throw UsageError(
            "--depth-near must be less than --depth-far; for disparities, add --depth-kind "
            "disparity");
    }
    if (mapping.inverse && *mapping.near <= 0.0) {
        throw UsageError("--depth-near must be above 0 with --depth-inverse");
    }
    if (!mapping.inverse && !std::isfinite(*mapping.far)) {
        throw UsageError("--depth-far can be infinite only with --depth-inverse");
    }
}

}  // namespace

const char* depthKindName(DepthKind kind) {
    switch (kind) {
        case DepthKind::kDistance:
            return "distance";
        case DepthKind::kDisparity:
            return "disparity";
        case DepthKind::kNormalised:
            break;
    }
    return "normalised";
}

void requireConsistent(const DepthMapping& mapping, DepthKind kind) {
    const bool range = mapping.near.has_value() || mapping.far.has_value();
    if (mapping.automatic && range) {
        throw UsageError(
            "--depth-auto finds near and far itself; leave out --depth-near and --depth-far");
    }
    if (kind == DepthKind::kNormalised && (range || mapping.maps())) {
        throw UsageError(
            "a normalised map is taken as it is; leave out --depth-near, --depth-far, --depth-auto "
            "and --depth-inverse, or say --depth-kind distance");
    }
    requireRange(mapping, kind);
}

bool isNothing(double value, DepthKind kind) {
    if (!(std::fabs(value) < kSkyDistance)) return true;
    if (kind == DepthKind::kDistance) return value <= 0.0;
    return kind == DepthKind::kDisparity && value < 0.0;
}

void DepthRange::add(const DepthRange& other) {
    least = std::min(least, other.least);
    most = std::max(most, other.most);
    nothing += other.nothing;
}

void DepthRange::add(double value, DepthKind kind) {
    if (isNothing(value, kind)) {
        ++nothing;
        return;
    }
    least = std::min(least, value);
    most = std::max(most, value);
}

DepthCurve::DepthCurve(DepthKind kind, const DepthMapping& mapping, const DepthRange& range,
                       bool inverted)
    : kind_(kind),
      curve_(mapping.curve),
      inverse_(kind == DepthKind::kDistance && (mapping.inverse || !mapping.maps())) {
    const bool nearIsMost = kind == DepthKind::kDisparity;
    near_ = scaled(mapping.near.value_or(nearIsMost ? range.most : range.least));
    far_ = scaled(mapping.far.value_or(nearIsMost ? range.least : range.most));
    nothing_ = kind == DepthKind::kNormalised && inverted ? 1.0 : 0.0;
    if (curve_) nothing_ = curve_(std::numeric_limits<double>::infinity());
}

double DepthCurve::position(double value) const {
    if (isNothing(value, kind_)) return nothing_;
    if (kind_ == DepthKind::kNormalised) return value;
    if (!curve_) return share(value);
    return curve_(kind_ == DepthKind::kDisparity ? 1.0 / value : value);
}

float DepthCurve::operator()(double value) const {
    return static_cast<float>(std::clamp(position(value), 0.0, 1.0));
}

double DepthCurve::scaled(double value) const {
    return inverse_ ? 1.0 / value : value;
}

// The value's place from far to near. A map with one value only is near all over.
double DepthCurve::share(double value) const {
    const double away = scaled(value) - far_;
    if (near_ != far_) return away / (near_ - far_) + 0.0;  // + 0.0 makes -0 a 0
    if (away == 0.0) return 1.0;
    const bool largeIsNear = inverse_ || kind_ == DepthKind::kDisparity;
    return std::copysign(HUGE_VAL, largeIsNear ? away : -away);
}

}  // namespace pictures
