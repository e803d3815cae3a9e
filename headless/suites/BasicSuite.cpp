// SPDX-License-Identifier: Apache-2.0
// Hands out the suites and counts them.

#include <string_view>

#include "headless/state/HostState.h"
#include "headless/suites/Suites.h"

namespace headless {

namespace {

constexpr SPErr kSuiteNotFound = PF_Err_INVALID_CALLBACK;

std::string bookName(const char* name, std::int32_t version) {
    return std::string(name) + " " + std::to_string(version);
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    return guarded([&] {
        if (!name || !suite) return PF_Err_BAD_CALLBACK_PARAM;
        *suite = nullptr;
        HostState& host = HostState::current();
        host.log.add("AcquireSuite", name, version);
        if (const PF_Err err = host.failures.checkSuite(name)) return err;
        *suite = findSuite(name, version);
        if (!*suite) return kSuiteNotFound;
        host.books.lend("suite", bookName(name, version));
        return PF_Err_NONE;
    });
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    return guarded([&] {
        if (!name) return PF_Err_BAD_CALLBACK_PARAM;
        HostState& host = HostState::current();
        host.log.add("ReleaseSuite", name, version);
        const bool wasOut = host.books.takeBack("suite", bookName(name, version));
        return wasOut ? PF_Err_NONE : PF_Err_BAD_CALLBACK_PARAM;
    });
}

}  // namespace

const void* findSuite(const char* name, std::int32_t version) {
    struct Entry {
        std::string_view name;
        std::int32_t version;
        const void* table;
    };
    const Entry entries[] = {
        {kPFSampling8Suite, kPFSamplingSuiteVersion1, sampling8Suite()},
        {kPFSampling16Suite, kPFSamplingSuiteVersion1, sampling16Suite()},
        {kPFSamplingFloatSuite, kPFSamplingSuiteVersion1, samplingFloatSuite()},
        {kPFWorldSuite, kPFWorldSuiteVersion2, worldSuite()},
        {kAEGPIterateSuite, kAEGPIterateSuiteVersion1, iterateSuite()},
        {kPFAdvAppSuite, kPFAdvAppSuiteVersion1, advAppSuite()},
        {kPFParamUtilsSuite, kPFParamUtilsSuiteVersion3, paramUtilsSuite()},
        {kAEGPUtilitySuite, kAEGPUtilitySuiteVersion11, utilitySuite()},
    };
    for (const Entry& entry : entries) {
        if (entry.name == name && entry.version == version) return entry.table;
    }
    return nullptr;
}

SPBasicSuite basicSuite() {
    SPBasicSuite basic{};
    basic.AcquireSuite = acquireSuite;
    basic.ReleaseSuite = releaseSuite;
    return basic;
}

}  // namespace headless
