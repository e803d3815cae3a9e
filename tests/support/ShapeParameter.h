#pragma once
// Declares as much of the effect's controls as the render driver reads: `Custom Blur Shape`.

#include <memory>
#include <utility>

#include "effect/ParameterIndices.h"
#include "headless/Host.h"

// Fills the indices up to the shape layer with layer parameters and sets it; null for none.
inline void declareShapeParameter(headless::Host& host,
                                  std::shared_ptr<const headless::World> shape) {
    for (int index = kInputLayer + 1; index <= kCustomBlurShape; ++index) {
        PF_ParamDef def{};
        def.param_type = PF_Param_LAYER;
        host.parameters().declare(def);
    }
    host.parameters().setLayer(kCustomBlurShape, std::move(shape));
}
