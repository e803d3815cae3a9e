// SPDX-License-Identifier: Apache-2.0
#include "host/Iterator.h"

#include "headless/Executor.h"
#include "support/HostFixture.h"

namespace {

using testing::ElementsAre;

constexpr const char* kAcquire = "AcquireSuite AEGP Iterate Suite 1";
constexpr const char* kRelease = "ReleaseSuite AEGP Iterate Suite 1";

class Iterator : public ContextFixture {};

// Counts the calls of each item. Items share no memory.
struct Items {
    std::vector<int> visits;
    int failingItem = -1;

    int iterate(int thread, int i, int iterations) {
        EXPECT_TRUE(thread >= 0 && thread < headless::kThreadIndices);
        EXPECT_EQ(iterations, static_cast<int>(visits.size()));
        ++visits[static_cast<std::size_t>(i)];
        return i == failingItem ? PF_Interrupt_CANCEL : PF_Err_NONE;
    }
};

TEST_F(Iterator, RunsEachItemOnce) {
    Items items{std::vector<int>(301)};
    EXPECT_THAT(callsOf([&] { EXPECT_EQ(AEO::Iterator::IterationT(*context, items, 301), 0); }),
                ElementsAre(kAcquire, "AEGP_IterateGeneric 301", kRelease));
    EXPECT_THAT(items.visits, testing::Each(1));
}

TEST_F(Iterator, ReturnsAnItemsError) {
    Items items{std::vector<int>(40), 17};
    EXPECT_EQ(AEO::Iterator::IterationT(*context, items, 40), PF_Interrupt_CANCEL);
}

TEST_F(Iterator, SkipsCallsWithoutThreadOrObject) {
    static AEGP_IterateSuite1 table;
    table.AEGP_IterateGeneric = [](std::int32_t count, void* refcon,
                                   AEGP_IterateFunction fn) -> A_Err {
        return fn(refcon, -1, 0, count) | fn(nullptr, 0, 1, count) | fn(refcon, 0, 2, count);
    };
    SPBasicSuite basic{};
    basic.AcquireSuite = [](const char*, std::int32_t, const void** suite) -> SPErr {
        *suite = &table;
        return 0;
    };
    basic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr { return 0; };
    PF_InData odd = in_data;
    odd.pica_basicP = &basic;
    context->in_data = &odd;
    Items items{std::vector<int>(3), 0};
    EXPECT_EQ(AEO::Iterator::IterationT(*context, items, 3), 0);
    EXPECT_THAT(items.visits, ElementsAre(0, 0, 1));
}

TEST_F(Iterator, OrsTheThreadCountsErrorIntoTheCallers) {
    int err = 0;
    EXPECT_EQ(AEO::Iterator::GetNumThreads(*in_data.pica_basicP, err), headless::kThreadIndices);
    EXPECT_EQ(err, 0);
    err |= 4;
    host.failAt(headless::Operation::kGetNumThreads, 1, 513);
    AEO::Iterator::GetNumThreads(*in_data.pica_basicP, err);
    EXPECT_EQ(err, 4 | 513);
}

}  // namespace
