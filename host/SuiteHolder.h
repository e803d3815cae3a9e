// SPDX-License-Identifier: Apache-2.0
#pragma once
// Scoped acquisition of one of the host's function suites.

#include <cstdint>

#include "platform/Suites.h"

namespace AEO {

// Name and version under which the host hands out the function table `Table`.
template <typename Table>
struct SuiteIdentity;

template <>
struct SuiteIdentity<PF_Sampling8Suite1> {
    static constexpr const char* kName = kPFSampling8Suite;
    static constexpr std::int32_t kVersion = kPFSamplingSuiteVersion1;
};
template <>
struct SuiteIdentity<PF_Sampling16Suite1> {
    static constexpr const char* kName = kPFSampling16Suite;
    static constexpr std::int32_t kVersion = kPFSamplingSuiteVersion1;
};
template <>
struct SuiteIdentity<PF_SamplingFloatSuite1> {
    static constexpr const char* kName = kPFSamplingFloatSuite;
    static constexpr std::int32_t kVersion = kPFSamplingSuiteVersion1;
};
template <>
struct SuiteIdentity<PF_WorldSuite2> {
    static constexpr const char* kName = kPFWorldSuite;
    static constexpr std::int32_t kVersion = kPFWorldSuiteVersion2;
};
template <>
struct SuiteIdentity<AEGP_IterateSuite1> {
    static constexpr const char* kName = kAEGPIterateSuite;
    static constexpr std::int32_t kVersion = kAEGPIterateSuiteVersion1;
};
template <>
struct SuiteIdentity<PF_AdvAppSuite1> {
    static constexpr const char* kName = kPFAdvAppSuite;
    static constexpr std::int32_t kVersion = kPFAdvAppSuiteVersion1;
};
template <>
struct SuiteIdentity<PF_ParamUtilsSuite3> {
    static constexpr const char* kName = kPFParamUtilsSuite;
    static constexpr std::int32_t kVersion = kPFParamUtilsSuiteVersion3;
};
template <>
struct SuiteIdentity<AEGP_UtilitySuite11> {
    static constexpr const char* kName = kAEGPUtilitySuite;
    static constexpr std::int32_t kVersion = kAEGPUtilitySuiteVersion11;
};

// Holds at most one acquisition of a suite and releases it at the end of its scope.
template <typename Table>
struct SuiteHolder {
    using Identity = SuiteIdentity<Table>;

    PF_Err err = PF_Err_NONE;      // of the last acquisition; recorded, not acted on
    const Table* suite = nullptr;  // null while not acquired
    SPBasicSuite* basic;           // not owned

    explicit SuiteHolder(SPBasicSuite* provider) : basic(provider) {}
    ~SuiteHolder() { release(); }
    SuiteHolder(const SuiteHolder&) = delete;
    SuiteHolder& operator=(const SuiteHolder&) = delete;

    // Acquires the suite unless it is held already. On failure `suite` stays null, whatever the
    // host stored, and `err` holds the code.
    void acquire() {
        if (suite) return;
        const void* table = nullptr;
        err = basic->AcquireSuite(Identity::kName, Identity::kVersion, &table);
        suite = err == PF_Err_NONE ? static_cast<const Table*>(table) : nullptr;
    }

    // Releases the suite if it is held.
    void release() {
        // The analyser overlooks the initial value of a member of a member.
        // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.Branch)
        if (!suite) return;
        basic->ReleaseSuite(Identity::kName, Identity::kVersion);
        suite = nullptr;
    }
};

}  // namespace AEO
