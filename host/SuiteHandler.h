// SPDX-License-Identifier: Apache-2.0
#pragma once
// Suites that are acquired on first use.

#include <atomic>

#include "host/SuiteHolder.h"

namespace AEO {

// One suite that is acquired by the first `get` and released by the destructor.
//
// Several worker threads may make the first `get` at the same time. Each that finds the cache empty
// acquires the suite. The one that stores its table keeps its acquisition for the destructor and
// the others release theirs, so the host's count is right without a lock.
template <typename Table>
class LazySuite {
public:
    explicit LazySuite(SPBasicSuite* provider) : basic_(provider) {}
    ~LazySuite() {
        if (cached_.load(std::memory_order_relaxed)) release();
    }
    LazySuite(const LazySuite&) = delete;
    LazySuite& operator=(const LazySuite&) = delete;

    // Returns the suite's table, or null if the host doesn't offer it.
    const Table* get() {
        const Table* table = cached_.load(std::memory_order_acquire);
        return table ? table : acquire();
    }

private:
    using Identity = SuiteIdentity<Table>;

    const Table* acquire() {
        const void* acquired = nullptr;
        const SPErr err = basic_->AcquireSuite(Identity::kName, Identity::kVersion, &acquired);
        if (err != PF_Err_NONE || !acquired) return nullptr;

        const auto* const table = static_cast<const Table*>(acquired);
        const Table* winner = nullptr;
        if (cached_.compare_exchange_strong(winner, table, std::memory_order_acq_rel)) return table;
        release();
        return winner;
    }

    void release() { basic_->ReleaseSuite(Identity::kName, Identity::kVersion); }

    SPBasicSuite* basic_;
    std::atomic<const Table*> cached_{nullptr};
};

}  // namespace AEO

// The host's suites, each in one version, acquired on first use and released by the destructor.
// Lives on the stack of a command. The accessors may be called on any thread and never return null:
// a missing suite throws the int 516.
class AEGP_SuiteHandler {
public:
    explicit AEGP_SuiteHandler(SPBasicSuite* basic);

    const PF_Sampling8Suite1* PFSampling8Suite1() { return found(sampling8_.get()); }
    const PF_Sampling16Suite1* PFSampling16Suite1() { return found(sampling16_.get()); }
    const PF_SamplingFloatSuite1* PFSamplingFloatSuite1() { return found(samplingFloat_.get()); }
    const PF_WorldSuite2* PFWorldSuite2() { return found(world_.get()); }
    const PF_ParamUtilsSuite3* PFParamUtilsSuite3() { return found(paramUtils_.get()); }
    const AEGP_UtilitySuite11* AEGPUtilitySuite11() { return found(utility_.get()); }

private:
    template <typename Table>
    const Table* found(const Table* table) const {
        if (!table) MissingSuiteError();
        return table;
    }

    // Throws PF_Err_BAD_CALLBACK_PARAM, the code that the entry point then returns to the host.
    [[noreturn]] void MissingSuiteError() const;

    AEO::LazySuite<PF_Sampling8Suite1> sampling8_;
    AEO::LazySuite<PF_Sampling16Suite1> sampling16_;
    AEO::LazySuite<PF_SamplingFloatSuite1> samplingFloat_;
    AEO::LazySuite<PF_WorldSuite2> world_;
    AEO::LazySuite<PF_ParamUtilsSuite3> paramUtils_;
    AEO::LazySuite<AEGP_UtilitySuite11> utility_;
};
