// SPDX-License-Identifier: Apache-2.0
#pragma once
// Everything that a frame needs from the parameters and the host, in render units.

#include <cstdint>

#include "host/AEO_Parameter.h"
#include "host/EffectWorld.h"
#include "platform/Commands.h"

class AEGP_SuiteHandler;

// Values of `Placement`.
inline constexpr std::int32_t kPlacementCenter = 1;
inline constexpr std::int32_t kPlacementStretch = 2;

// Values of `Composite Mode`.
inline constexpr std::int32_t kCompositeNormal = 1;
inline constexpr std::int32_t kCompositeSplit = 2;

// Values of the channel popups.
inline constexpr std::int32_t kChannelRed = 1;
inline constexpr std::int32_t kChannelGreen = 2;
inline constexpr std::int32_t kChannelBlue = 3;
inline constexpr std::int32_t kChannelAlpha = 4;
inline constexpr std::int32_t kChannelAverage = 5;

// One frame's parameters. Lives on the stack of one smart-render command and is read-only for the
// stages. The constructor sets only `depthLayer` and `depthWorld`; every other field is written
// before it is read. Pointers are not owned.
struct RenderInfo {
    // `depth` is the record of the composition layer with the depth map, zero for none; `context`
    // has to outlive this.
    RenderInfo(AEO::InData& context, const PF_LayerDef& depth)
        : depthLayer(depth), depthWorld(context, depthLayer) {}
    RenderInfo(const RenderInfo&) = delete;
    RenderInfo& operator=(const RenderInfo&) = delete;

    // Reads the parameters at the command's time, in a fixed order, and turns them into render
    // units. Returns the first error of the reads; the reads after a failed one still run.
    int extractParameters(PF_InData* in_data);

    double radius;  // pixels of this render: downsample applied, half a pixel added
    std::int32_t vertices;
    double roundness;
    double concentration;
    double deform;
    double rotation;             // degrees
    std::int32_t customChannel;  // alpha when no custom shape is set
    double exposure;
    double threshold;
    bool repeatEdge;
    PF_InData* inData;
    std::int32_t originDeltaX;  // input's origin minus output's
    std::int32_t originDeltaY;
    PF_LayerDef* output;
    PF_LayerDef* input;
    PF_LayerDef depthLayer;  // first word 0 when no depth map is chosen
    AEO::EffectWorld depthWorld;
    double pixelAspect;  // a whole number: the host's ratio, truncated
    std::int32_t layerCount;
    bool invertDepth;
    double focalDistance;
    double profile;
    double profileSlope;   // exponent of the layer assignment
    double profileOffset;  // always 0
    double useFocusPoint;  // 1 or 0
    AEO::PointValue focusPoint0;
    AEO::PointValue focusPoint1;
    double focusInterpolation;
    std::int32_t placement;
    std::int32_t depthChannel;
    std::int32_t compositeMode;
    double edgeLeak;  // gain of the edge suppression, 0 for none
    double edgeThreshold;
    AEGP_SuiteHandler* suites;
    PF_LRect frameRect;   // the whole layer at this downsample
    PF_LRect paddedRect;  // frameRect with the blur's reach around it
};
