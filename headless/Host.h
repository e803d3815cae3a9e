// SPDX-License-Identifier: Apache-2.0
#pragma once
// The host without the application: everything that the effect may request, in one object.
//
// Use it on its own to test code that needs the host's services:
//
//     headless::HostOptions options;
//     options.threads = 2;
//     headless::Host host(options);
//     PF_InData in_data = host.makeInData();
//     ... use in_data ...
//     EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
//
// or pass it to a headless::Effect to drive a bundle. Only one host can exist in a process at a
// time, since some of the host's functions carry no context.

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
    int threads = 0;  // for iterations; 0: as many as the processor has
    ExecutorKind executor = defaultExecutor();
    std::uint64_t memoryLimit = kNoMemoryLimit;  // bytes, for handles and worlds together
};

// What the effect last drew in the info panel.
struct InfoPanel {
    std::vector<std::string> lines;
    PF_Pixel color{0, 0, 0, 0};
    int draws = 0;  // number of texts and colours drawn
};

class Host {
public:
    // Throws std::logic_error if another host exists. The thread that creates the host is its main
    // (and user-interface) thread.
    explicit Host(const HostOptions& options = {});
    // Frees what the effect left; check accounts() before.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // A record with all services, for code that runs outside a command: time 0, square pixels, and
    // the last setGeometry(). Check-outs read parameters(), add_param adds to it.
    PF_InData makeInData();
    // The size and downsample of makeInData() and of its check-outs; initially 0 by 0 and 1/1.
    void setGeometry(const Geometry& geometry);
    ParameterSet& parameters();
    // Called by the progress callback of makeInData(), which returns 517 if `report` sets the
    // cancel flag.
    void setProgress(std::function<void(int current, int total)> report);
    // Makes progress and iterations outside a command return 517.
    void setCancelled(bool cancelled);

    // How many threads carry out iterations. The effect sees kThreadIndices, whatever their number.
    int workers() const;

    Failures& failures();
    // As Failures::failAt.
    void failAt(Operation operation, std::int64_t k, PF_Err code = PF_Err_BAD_CALLBACK_PARAM);

    Accounts accounts() const;
    void clearFaults();
    MemoryUse memory() const;
    void setMemoryLimit(std::uint64_t bytes);
    void resetPeak();  // to what is in use now
    // Frees the pre-render records that the effect left, and returns their number.
    int reclaimPreRenderRecords();

    // The panel after the last draw on any thread.
    InfoPanel info() const;

    // Records every call of the effect except samples, as short texts such as
    // "AcquireSuite PF World Suite 2", "checkout_param 1" or "AEGP_IterateGeneric 512".
    void startCallLog();
    // Ends the recording and returns the texts in the order of the calls.
    std::vector<std::string> takeCallLog();

private:
    friend class Effect;  // it sends commands with this host's services

    HostState& state() { return *state_; }

    std::unique_ptr<HostState> state_;
};

}  // namespace headless
