// SPDX-License-Identifier: Apache-2.0
#pragma once
// Deliberate failures of host operations, to test how the effect handles them.

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

#include "platform/Scalars.h"

namespace headless {

// Every operation that the host offers to the effect.
enum class Operation {
    kNewHandle,   // returns null
    kLockHandle,  // returns null
    kAcquireSuite,
    kCheckoutParam,
    kCheckinParam,
    kAddParam,
    kProgress,
    kCopy,
    kCheckoutLayer,
    kCheckoutLayerPixels,
    kCheckoutOutput,
    kNewWorld,
    kDisposeWorld,
    kGetPixelFormat,
    kSubpixelSample,
    kAreaSample,
    kGetNumThreads,
    kIterateGeneric,
    kInfoDraw,
    kUpdateParamUI,
    kRegisterWithAEGP,
};
inline constexpr std::size_t kOperations =
    static_cast<std::size_t>(Operation::kRegisterWithAEGP) + 1;

// All functions may be called from any thread.
class Failures {
public:
    // Makes `times` calls of `operation` fail with `code`, starting with the k-th from now (k >=
    // 1). A second rule for the same operation replaces the first.
    void failAt(Operation operation, std::int64_t k, PF_Err code = PF_Err_BAD_CALLBACK_PARAM,
                std::int64_t times = 1);
    // The same for acquisitions of the suite `name` only, in any version.
    void failSuite(const std::string& name, std::int64_t k = 1,
                   PF_Err code = PF_Err_INVALID_CALLBACK, std::int64_t times = kAlways);
    // Makes the k-th handle from now half as large as requested.
    void shrinkHandleAt(std::int64_t k);
    // Removes all rules and sets all counts to zero.
    void clear();

    // Calls of `operation` since the last clear(). Sampling is counted only while there is a rule
    // for it, since a shared counter would cost more than the sample.
    std::int64_t count(Operation operation) const;

    // Counts one call and returns the code to fail with, or 0.
    PF_Err check(Operation operation);
    PF_Err checkSuite(const std::string& name);
    // Whether to make the new handle smaller; called once for each.
    bool shrinksHandle();

    static constexpr std::int64_t kAlways = INT64_MAX;

private:
    struct Rule {
        std::int64_t seen = 0;  // calls since the rule was made
        std::int64_t first = 0;
        std::int64_t times = 0;
        PF_Err code = PF_Err_NONE;
    };
    static PF_Err apply(Rule& rule);

    mutable std::mutex mutex_;
    std::array<std::atomic<bool>, kOperations> armed_{};
    std::array<std::atomic<std::int64_t>, kOperations> counts_{};
    std::array<Rule, kOperations> rules_{};
    std::map<std::string, Rule> suiteRules_;
    Rule shrinkRule_;
};

}  // namespace headless
