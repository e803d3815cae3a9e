// SPDX-License-Identifier: Apache-2.0
#include "host/SuiteHandler.h"

#include <latch>
#include <thread>

#include "support/HostFixture.h"

namespace {

class SuiteHandler : public HostFixture {};

TEST_F(SuiteHandler, ThrowsTheHostsCodeForAMissingSuite) {
    host.failures().failSuite(kAEGPUtilitySuite);
    AEGP_SuiteHandler suites(in_data.pica_basicP);
    EXPECT_THAT([&] { suites.AEGPUtilitySuite11(); }, testing::Throws<int>(516));
    host.failures().clear();
    EXPECT_NE(suites.AEGPUtilitySuite11(), nullptr) << "a failure is not cached";
}

// The host throws at the last of the context's three suites.
TEST_F(SuiteHandler, AnUnfinishedContextReleasesWhatItHolds) {
    static SPBasicSuite* real;
    real = in_data.pica_basicP;
    SPBasicSuite throwing = *real;
    throwing.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) {
        if (std::string(name) == kPFSamplingFloatSuite) throw 516;
        return real->AcquireSuite(name, version, suite);
    };
    in_data.pica_basicP = &throwing;
    EXPECT_THROW(AEO::InData{&in_data}, int);
}

TEST_F(SuiteHandler, KeepsTheCountEvenWhenThreadsMeet) {
    constexpr int kThreads = 4;
    for (int round = 0; round < 50; ++round) {
        AEGP_SuiteHandler suites(in_data.pica_basicP);
        std::latch start(kThreads);
        std::vector<const PF_Sampling8Suite1*> tables(kThreads);
        std::vector<std::jthread> threads;
        threads.reserve(kThreads);
        for (auto& table : tables) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                table = suites.PFSampling8Suite1();
            });
        }
        threads.clear();
        EXPECT_THAT(tables, testing::Each(suites.PFSampling8Suite1()));
    }
}

}  // namespace
