#pragma once
// What the host's functions share: one record for the host, one context for each command.

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "headless/Books.h"
#include "headless/Host.h"
#include "headless/Memory.h"
#include "platform/Callbacks.h"
#include "platform/SmartRender.h"

namespace headless {

struct FrameState;

inline constexpr std::uint64_t kContextMagic = 0x545845544e4f4348;  // "HCONTEXT"

// One command in flight: what `effect_ref` points to.
struct CallContext {
    std::uint64_t magic = kContextMagic;
    std::string command = "no command";
    // The one thread that may use the parameter and frame callbacks; empty: any.
    std::thread::id thread;
    ParameterSet* declaring = nullptr;         // takes add_param; null: refused
    ParameterSet* uiParameters = nullptr;      // takes PF_UpdateParamUI; null: refused
    const ParameterSet* parameters = nullptr;  // read by check-outs; null: refused
    std::shared_ptr<const World> input;        // layer 0
    Geometry geometry;
    A_Time time{0, 1};
    std::int32_t timeStep = 1;
    PF_RationalScale pixelAspect{1, 1};
    std::function<void(int, int)> progress;
    const std::atomic<bool>* cancel = nullptr;
    FrameState* frame = nullptr;  // of a smart-render command
    InfoPanel info;

    // Check-outs that stand: by the address of the record they were written to.
    struct CheckedOut {
        int index;
        std::shared_ptr<const World> layer;
    };
    std::map<const PF_ParamDef*, CheckedOut> checkedOut;

    bool isCancelled() const { return cancel && cancel->load(std::memory_order_relaxed); }
};

struct HostState {
    explicit HostState(const HostOptions& options);
    ~HostState();

    std::unique_ptr<Executor> executor;
    Books books;
    CallLog log;
    Failures failures;
    MemoryMeter meter;
    HandleTable handles{meter, books};
    WorldTable worlds{meter, books};
    PF_UtilCallbacks utils;
    SPBasicSuite basic;
    const std::thread::id mainThread = std::this_thread::get_id();

    // The context of code that runs outside a command.
    ParameterSet parameters;
    CallContext outside;
    std::atomic<bool> outsideCancelled{false};

    std::mutex infoMutex;
    InfoPanel lastInfo;

    // The living host. Throws std::logic_error if there is none.
    static HostState& current();
};

// The command that runs on this thread, or the host's own context.
CallContext& contextOfThread();
// Makes `context` the command of this thread for the life of the object.
class CommandScope {
public:
    explicit CommandScope(CallContext& context);
    ~CommandScope();
    CommandScope(const CommandScope&) = delete;
    CommandScope& operator=(const CommandScope&) = delete;

private:
    CallContext* before;
};

// The context behind the `effect_ref` of `operation`. A null result is a fault in the books.
CallContext* contextOf(PF_ProgPtr effectRef, const char* operation);
// The same, for operations that only the thread of the command may call.
CallContext* contextOnItsThread(PF_ProgPtr effectRef, const char* operation);
// Whether this is the main thread; if not, a fault.
bool onMainThread(const char* operation);

// A record of the interface for `context`, with every service wired up.
PF_InData makeInData(HostState& host, CallContext& context);

// The tables of the callbacks.
PF_InteractCallbacks interactCallbacks();
PF_UtilCallbacks utilCallbacks();
SPBasicSuite basicSuite();

// The body of a function that the effect calls: no exception passes into the effect.
template <class Body>
PF_Err guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return PF_Err_INTERNAL_STRUCT_DAMAGED;
    }
}

}  // namespace headless
