// SPDX-License-Identifier: Apache-2.0
#pragma once
// The index of each parameter: its place in the order in which the host shows the controls. The
// host's input layer has index 0; groups have indices of their own.

enum ParameterIndex : int {
    kInputLayer = 0,
    kBlurRadius = 1,
    kVertices = 2,
    kRoundness = 3,
    kConcentration = 4,
    kDeform = 5,
    kRotation = 6,
    kCustomBlurShape = 7,
    kCustomLayerChannel = 8,
    kExposure = 9,
    kThreshold = 10,
    kEdgeBehavior = 11,
    kDepthMapGroup = 12,
    kDepthLayer = 13,
    kDepthChannel = 14,
    kPlacement = 15,
    kResolution = 16,
    kFocalDistance = 17,
    kUseFocusPoint = 18,
    kFocusPoint0 = 19,
    kFocusPoint1 = 20,
    kFocusInterpolation = 21,
    kProfile = 22,
    kInvertDepthMap = 23,
    kCompositeMode = 24,
    kRemoveEdgeLeak = 25,
    kDetectEdgeThreshold = 26,
    kDepthMapGroupEnd = 27,
    kParameterCount = 28  // with the input layer
};
