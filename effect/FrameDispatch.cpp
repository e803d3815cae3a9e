// SPDX-License-Identifier: Apache-2.0
#include "effect/FrameDispatch.h"

#include <utility>

#include "depth/FocusPointDistance.h"
#include "pipeline/RenderMain.h"

namespace {

constexpr const char* kMemoryMessage =
    "TARNWICK Orbel\nMemory is insufficient.\nReduce [Blur Radius] or [Resolution] of Depth Map.";

// The depth layers of the frame; one without a depth map.
std::int32_t layersOf(const RenderInfo& info) {
    return info.depthLayer.reserved0 != nullptr ? info.layerCount : 1;
}

// Runs the pipeline's instance for `layers`, or the one for a single layer if there is none.
template <std::size_t... N>
int runPipeline(std::index_sequence<N...>, std::int32_t layers, PF_InData* in_data,
                AEO::InData& context, const RenderInfo& info, const int& format) {
    int err = PF_Err_NONE;
    const auto runIf = [&]<std::size_t Layers>() {
        if (layers != static_cast<std::int32_t>(Layers)) return false;
        err = RenderMainT<Layers>(in_data, context, info.input, info.output, info, format);
        return true;
    };
    if ((runIf.template operator()<N>() || ...)) return err;
    return RenderMainT<1>(in_data, context, info.input, info.output, info, format);
}

}  // namespace

int renderFrame(PF_InData* in_data, PF_OutData* out_data, AEO::InData& context, RenderInfo& info,
                const int& format) {
    const std::int32_t layers = layersOf(info);
    if (layers >= 2 && info.useFocusPoint != 0.0) {
        info.focalDistance = forcusPointToDistance(info, info.depthWorld);
    }
    const int err = runPipeline(BuiltLayerCounts{}, layers, in_data, context, info, format);
    if (err == PF_Err_OUT_OF_MEMORY) {
        in_data->utils->ansi.sprintf(out_data->return_msg, "%s", kMemoryMessage);
    }
    return err;
}
