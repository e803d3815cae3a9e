// SPDX-License-Identifier: Apache-2.0
#include "headless/state/CallContext.h"

#include "headless/state/HostState.h"

namespace headless {

namespace {

thread_local CallContext* runningCommand = nullptr;

}  // namespace

CallContext& contextOfThread() {
    return runningCommand ? *runningCommand : HostState::current().outside;
}

CommandScope::CommandScope(CallContext& context) : before_(runningCommand) {
    runningCommand = &context;
}

CommandScope::~CommandScope() {
    runningCommand = before_;
}

CallContext* contextOf(PF_ProgPtr effectRef, const char* operation) {
    auto* context = static_cast<CallContext*>(effectRef);
    if (!context || context->magic != kContextMagic) {
        HostState::current().books.fault(std::string(operation) + " without a valid effect_ref");
        return nullptr;
    }
    return context;
}

CallContext* contextOnItsThread(PF_ProgPtr effectRef, const char* operation) {
    CallContext* context = contextOf(effectRef, operation);
    const bool anyThread = !context || context->thread == std::thread::id();
    if (!anyThread && context->thread != std::this_thread::get_id()) {
        HostState::current().books.fault(std::string(operation) +
                                         " on a thread that does not run the command");
        return nullptr;
    }
    return context;
}

bool onMainThread(const char* operation) {
    HostState& host = HostState::current();
    if (std::this_thread::get_id() == host.mainThread) return true;
    host.books.fault(std::string(operation) + " on a thread other than the main thread");
    return false;
}

PF_InData makeInData(HostState& host, CallContext& context) {
    const Geometry& geometry = context.geometry;
    PF_InData in{};
    in.inter = interactCallbacks();
    in.utils = &host.utils;
    in.effect_ref = &context;
    in.quality = 1;
    in.version = {13, 28};
    in.appl_id = 0x46585443;  // 'FXTC'
    in.num_params = context.parameters ? context.parameters->size() : 0;
    in.current_time = context.time.value;
    in.time_step = context.timeStep;
    in.local_time_step = context.timeStep;
    in.time_scale = context.time.scale;
    in.width = geometry.width;
    in.height = geometry.height;
    in.extent_hint = {0, 0, geometry.width, geometry.height};
    in.downsample_x = geometry.x;
    in.downsample_y = geometry.y;
    in.pixel_aspect_ratio = context.pixelAspect;
    in.pica_basicP = &host.basic;
    return in;
}

}  // namespace headless
