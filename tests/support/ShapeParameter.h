// SPDX-License-Identifier: Apache-2.0
#pragma once
// Declares the only control that the render driver reads: `Custom Blur Shape`.

#include <memory>
#include <utility>

#include "effect/ParameterIndices.h"
#include "headless/Host.h"

// Declares layer parameters up to the shape's index, and sets the shape; null for none.
inline void declareShapeParameter(headless::Host& host,
                                  std::shared_ptr<const headless::World> shape) {
    for (int index = kInputLayer + 1; index <= kCustomBlurShape; ++index) {
        PF_ParamDef def{};
        def.param_type = PF_Param_LAYER;
        host.parameters().declare(def);
    }
    host.parameters().setLayer(kCustomBlurShape, std::move(shape));
}
