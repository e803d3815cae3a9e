// SPDX-License-Identifier: Apache-2.0
#pragma once
// A frame's parameters and context, for tests of single stages without the effect.

#include "effect/RenderInfo.h"
#include "headless/Host.h"
#include "host/SuiteHandler.h"
#include "host/Vector.h"

// Makes the host's record, the command's context and a RenderInfo in which every field is set:
// radius 4, no exposure curve, edges not repeated, Normal mode, plane of focus at the map's end 0.
struct StageFixture {
    explicit StageFixture(headless::Host& host, const PF_LayerDef& depth = {})
        : in_data(host.makeInData()),
          context(&in_data),
          suites(in_data.pica_basicP),
          info(context, depth) {
        info.radius = 4.0;
        info.vertices = 6;
        info.roundness = info.concentration = info.deform = info.rotation = 0.0;
        info.customChannel = kChannelAlpha;
        info.exposure = info.threshold = 0.0;
        info.repeatEdge = false;
        info.inData = &in_data;
        info.originDeltaX = info.originDeltaY = 0;
        info.output = info.input = nullptr;
        info.pixelAspect = 1.0;
        info.layerCount = 2;
        info.invertDepth = false;
        info.focalDistance = 1.0;
        info.profile = 0.0;
        info.profileSlope = 1.0;
        info.profileOffset = info.useFocusPoint = 0.0;
        info.focusPoint0 = info.focusPoint1 = {0.0, 0.0};
        info.focusInterpolation = 0.0;
        info.placement = kPlacementCenter;
        info.depthChannel = kChannelRed;
        info.compositeMode = kCompositeNormal;
        info.edgeLeak = info.edgeThreshold = 0.0;
        info.suites = &suites;
        info.frameRect = info.paddedRect = {0, 0, 0, 0};
    }

    // Binds the two worlds; the frame is as large as the output.
    void show(headless::World& input, headless::World& output) {
        info.input = input.layer();
        info.output = output.layer();
        info.frameRect = info.paddedRect = {0, 0, output.width(), output.height()};
    }

    PF_InData in_data;
    AEO::InData context;
    AEGP_SuiteHandler suites;
    RenderInfo info;
};
