#pragma once
// One frame on its way through the two smart-render commands.

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "headless/Effect.h"
#include "headless/state/HostState.h"

namespace headless {

// What the smart-render callbacks work on.
struct FrameState {
    struct LayerCheckOut {
        PF_ParamIndex index = 0;
        PF_LRect rect{};               // of the layer, at the downsample
        std::shared_ptr<World> world;  // made when the pixels are asked for
        int out = 0;                   // how often the pixels are out
    };

    const FrameRequest* request = nullptr;
    FrameResult* result = nullptr;
    bool rendering = false;                        // between the two commands the callbacks differ
    std::map<std::int32_t, LayerCheckOut> layers;  // by check-out id
    std::shared_ptr<World> output;
};

PF_PreRenderCallbacks preRenderCallbacks();
PF_SmartRenderCallbacks smartRenderCallbacks();

// Takes the pixels back that the effect still holds, as the host does when the command ends, and
// looks for writes outside the rows.
void closeLayers(HostState& host, FrameState& frame);

}  // namespace headless
