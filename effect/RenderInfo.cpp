// SPDX-License-Identifier: Apache-2.0
#include "effect/RenderInfo.h"

#include <cmath>
#include <numbers>

#include "effect/ParameterIndices.h"
#include "host/Fixed.h"
#include "transform/SetUpMath.h"

namespace {

using std::numbers::pi;

// Keeps the argument of the profile's tangent just inside 0 and pi/2.
constexpr double kProfileReach = 0.9999;
// Keeps the gain of the edge suppression finite at 1.
constexpr double kEdgeLeakReach = 0.99;

// The host's ratio, truncated to a whole number: 4/3 becomes 1, 10/11 becomes 0.
double truncatedRatio(const PF_RationalScale& ratio) {
    const std::uint32_t whole = static_cast<std::uint32_t>(ratio.num) / ratio.den;
    return whole;
}

// Reads parameters at the command's time; keeps the first error of all reads.
class ParameterReader {
public:
    explicit ParameterReader(PF_InData* in_data) : in_data_(in_data) {}

    double fixed(int index) { return AEO::Parameter::Fixed(in_data_, index, err_); }
    double angle(int index) { return AEO::Parameter::Angle(in_data_, index, err_); }
    std::int32_t slider(int index) { return AEO::Parameter::Slider(in_data_, index, err_); }
    std::int32_t popup(int index) { return AEO::Parameter::Popup(in_data_, index, err_); }
    bool checkBox(int index) { return AEO::Parameter::CheckBox(in_data_, index, err_) != 0; }
    AEO::PointValue point(int index) { return AEO::Parameter::Point(in_data_, index, err_); }
    int error() const { return err_; }

private:
    PF_InData* in_data_;
    int err_ = PF_Err_NONE;
};

// The half pixel is added in parameter units; the vertical factor is ignored.
double renderRadius(ParameterReader& read, const PF_InData& in_data) {
    return (read.fixed(kBlurRadius) + 0.5) * AEO::fromRatio(in_data.downsample_x);
}

void readAperture(ParameterReader& read, RenderInfo& info) {
    info.vertices = read.slider(kVertices);
    info.roundness = read.fixed(kRoundness);
    info.concentration = read.fixed(kConcentration);
    info.deform = read.fixed(kDeform);
    info.rotation = read.angle(kRotation);
}

void readHighlightsAndEdges(ParameterReader& read, RenderInfo& info) {
    info.exposure = read.fixed(kExposure);
    info.threshold = read.fixed(kThreshold);
    info.repeatEdge = read.checkBox(kEdgeBehavior);
}

void readFocus(ParameterReader& read, RenderInfo& info) {
    info.focalDistance = read.fixed(kFocalDistance);
    info.useFocusPoint = read.checkBox(kUseFocusPoint) ? 1.0 : 0.0;
    info.focusPoint0 = read.point(kFocusPoint0);
    info.focusPoint1 = read.point(kFocusPoint1);
    info.focusInterpolation = read.fixed(kFocusInterpolation);
}

void readDepthCurves(ParameterReader& read, RenderInfo& info) {
    info.profile = read.fixed(kProfile);
    info.profileSlope = set_up::tan((info.profile * kProfileReach + 1.0) * pi * 0.25);
    info.profileOffset = 0.0;
    info.edgeLeak = set_up::tan(read.fixed(kRemoveEdgeLeak) * kEdgeLeakReach * pi * 0.5);
    info.edgeThreshold = read.fixed(kDetectEdgeThreshold);
}

}  // namespace

// The order of the reads is visible to the host.
int RenderInfo::extractParameters(PF_InData* in_data) {
    ParameterReader read(in_data);
    inData = in_data;
    radius = renderRadius(read, *in_data);
    readAperture(read, *this);

    // Stays checked out until all parameters are read.
    AEO::Parameter shape(in_data, kCustomBlurShape);
    const bool customShape = shape.layer()->reserved0 != nullptr;
    customChannel = customShape ? read.popup(kCustomLayerChannel) : kChannelAlpha;

    readHighlightsAndEdges(read, *this);
    placement = read.popup(kPlacement);
    depthChannel = read.popup(kDepthChannel);
    compositeMode = read.popup(kCompositeMode);
    pixelAspect = truncatedRatio(in_data->pixel_aspect_ratio);
    layerCount = read.slider(kResolution);
    invertDepth = read.checkBox(kInvertDepthMap);
    readFocus(read, *this);
    readDepthCurves(read, *this);
    return read.error();
}
