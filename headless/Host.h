#pragma once
// The host without the application: everything that the effect may ask for, in one object.
//
// Use it alone to test code that needs the host's services:
//
//     headless::HostOptions options;
//     options.threads = 2;
//     headless::Host host(options);
//     PF_InData in_data = host.makeInData();
//     ... use in_data ...
//     EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
//
// or give it to a headless::Effect to drive a bundle. One host at a time lives in a process, since
// some of the host's functions name no context.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "headless/Accounts.h"
#include "headless/Executor.h"
#include "headless/Failures.h"
#include "headless/Parameters.h"
#include "headless/World.h"
#include "platform/Commands.h"

namespace headless {

class Effect;
struct HostState;

inline constexpr std::uint64_t kNoMemoryLimit = UINT64_MAX;

struct HostOptions {
    int threads = 0;  // of an iteration; 0: as many as the processor has
    ExecutorKind executor = defaultExecutor();
    std::uint64_t memoryLimit = kNoMemoryLimit;  // bytes, of handles and worlds together
};

// What the effect last drew in the info panel.
struct InfoPanel {
    std::vector<std::string> lines;
    PF_Pixel color{0, 0, 0, 0};
    int draws = 0;  // texts and colours, counted
};

class Host {
public:
    // Throws std::logic_error if another host lives. The thread that makes the host is its main
    // (and user-interface) thread.
    explicit Host(const HostOptions& options = {});
    // Frees what the effect left; look at accounts() before.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // A record with all services wired up, for code that runs outside a command: time 0, square
    // pixels, and what setGeometry() said last. Check-outs read parameters(), add_param adds to it.
    PF_InData makeInData();
    // The size and downsample of makeInData() and of its check-outs; at first 0 by 0 and 1/1.
    void setGeometry(const Geometry& geometry);
    ParameterSet& parameters();
    // Called by the progress callback of makeInData(); 517 if it sets the cancel flag.
    void setProgress(std::function<void(int current, int total)> report);
    // Makes progress and iterations outside a command answer 517.
    void setCancelled(bool cancelled);

    int threads() const;

    Failures& failures();
    // As Failures::failAt.
    void failAt(Operation operation, std::int64_t k, PF_Err code = PF_Err_BAD_CALLBACK_PARAM);

    Accounts accounts() const;
    void clearFaults();
    MemoryUse memory() const;
    void setMemoryLimit(std::uint64_t bytes);
    void resetPeak();  // the peak becomes what is in use now
    // Frees the pre-render records that the effect left; gives how many there were.
    int reclaimPreRenderRecords();

    // The panel as the last draw on any thread left it.
    InfoPanel info() const;

    // Records every call of the effect except samples, as short texts such as
    // "AcquireSuite PF World Suite 2", "checkout_param 1" or "AEGP_IterateGeneric 512".
    void startCallLog();
    // Ends the recording and gives the texts in the order of the calls.
    std::vector<std::string> takeCallLog();

private:
    friend class Effect;  // sends commands with this host's services

    HostState& state() { return *state_; }

    std::unique_ptr<HostState> state_;
};

}  // namespace headless
