// SPDX-License-Identifier: Apache-2.0
#pragma once
// A running command, and how a call of the effect finds it.

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "headless/Host.h"

namespace headless {

struct FrameState;

inline constexpr std::uint64_t kContextMagic = 0x545845544e4f4348;  // "HCONTEXT"

// A running command: what `effect_ref` points to.
struct CallContext {
    std::uint64_t magic = kContextMagic;
    std::string command = "no command";
    // The only thread that may use the parameter and frame callbacks; empty: any.
    std::thread::id thread;
    ParameterSet* declaring = nullptr;         // for add_param; null: refused
    ParameterSet* uiParameters = nullptr;      // for PF_UpdateParamUI; null: refused
    const ParameterSet* parameters = nullptr;  // for check-outs; null: refused
    std::shared_ptr<const World> input;        // layer 0
    Geometry geometry;
    A_Time time{0, 1};
    std::int32_t timeStep = 1;
    PF_RationalScale pixelAspect{1, 1};
    std::function<void(int, int)> progress;
    const std::atomic<bool>* cancel = nullptr;
    FrameState* frame = nullptr;  // of a smart-render command
    InfoPanel info;

    // Parameters checked out, by the address of the record they were written to.
    struct CheckedOut {
        int index;
        std::shared_ptr<const World> layer;
    };
    std::map<const PF_ParamDef*, CheckedOut> checkedOut;

    bool isCancelled() const { return cancel && cancel->load(std::memory_order_relaxed); }
};

// The command running on this thread, or the host's own context.
CallContext& contextOfThread();
// Makes `context` the command of this thread during the object's lifetime.
class CommandScope {
public:
    explicit CommandScope(CallContext& context);
    ~CommandScope();
    CommandScope(const CommandScope&) = delete;
    CommandScope& operator=(const CommandScope&) = delete;

private:
    CallContext* before_;
};

// The context of the `effect_ref` passed to `operation`; null, and a fault in the books, if it is
// invalid.
CallContext* contextOf(PF_ProgPtr effectRef, const char* operation);
// The same, for operations that only the thread of the command may call.
CallContext* contextOnItsThread(PF_ProgPtr effectRef, const char* operation);
// Whether this is the main thread; if not, a fault.
bool onMainThread(const char* operation);

// A record of the interface for `context`, with every service.
PF_InData makeInData(HostState& host, CallContext& context);

}  // namespace headless
