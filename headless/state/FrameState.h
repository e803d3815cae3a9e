// SPDX-License-Identifier: Apache-2.0
#pragma once
// A frame during its two smart-render commands.

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
        std::shared_ptr<World> world;  // made when the pixels are requested
        int out = 0;                   // how often the pixels are checked out
    };

    const FrameRequest* request = nullptr;
    FrameResult* result = nullptr;
    bool rendering = false;                        // the two commands offer different callbacks
    std::map<std::int32_t, LayerCheckOut> layers;  // by check-out id
    std::shared_ptr<World> output;
};

PF_PreRenderCallbacks preRenderCallbacks();
PF_SmartRenderCallbacks smartRenderCallbacks();

// Checks in the pixels that the effect still holds, as the host does when the command ends, and
// looks for writes outside the rows.
void closeLayers(HostState& host, FrameState& frame);

}  // namespace headless
