#include <gtest/gtest.h>

#include "headless/Host.h"
#include "platform/Suites.h"

namespace headless {
namespace {

class FailuresTest : public testing::Test {
protected:
    PF_Err acquire(const char* name, int version, const void** table) {
        return in.pica_basicP->AcquireSuite(name, version, table);
    }

    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    PF_InData in = host.makeInData();
};

TEST_F(FailuresTest, EverySuiteIsThereInItsVersionOnly) {
    const std::pair<const char*, int> suites[] = {
        {kPFSampling8Suite, 1},  {kPFSampling16Suite, 1}, {kPFSamplingFloatSuite, 1},
        {kPFWorldSuite, 2},      {kAEGPIterateSuite, 1},  {kPFAdvAppSuite, 1},
        {kPFParamUtilsSuite, 3}, {kAEGPUtilitySuite, 11},
    };
    for (const auto& [name, version] : suites) {
        const void* table = nullptr;
        EXPECT_EQ(acquire(name, version, &table), 0) << name;
        EXPECT_NE(table, nullptr) << name;
        EXPECT_EQ(in.pica_basicP->ReleaseSuite(name, version), 0) << name;
        table = name;
        EXPECT_NE(acquire(name, version + 1, &table), 0) << name;
        EXPECT_EQ(table, nullptr) << name;
    }
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(FailuresTest, TheKthCallFailsAndNoOther) {
    host.failAt(Operation::Progress, 3, 99);
    std::vector<PF_Err> codes;
    for (int i = 0; i < 5; ++i) codes.push_back(in.inter.progress(in.effect_ref, i, 5));
    EXPECT_EQ(codes, (std::vector<PF_Err>{0, 0, 99, 0, 0}));
    EXPECT_EQ(host.failures().count(Operation::Progress), 5);
    host.failAt(Operation::Progress, 1);
    EXPECT_EQ(in.inter.progress(in.effect_ref, 0, 1), PF_Err_BAD_CALLBACK_PARAM);
    host.failAt(Operation::Progress, 1);
    host.failures().clear();
    EXPECT_EQ(in.inter.progress(in.effect_ref, 0, 1), PF_Err_NONE);
    EXPECT_EQ(host.failures().count(Operation::Progress), 1);
}

}  // namespace
}  // namespace headless
