#include "headless/Executor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

namespace headless {
namespace {

using Item = std::function<A_Err(int thread, int i)>;

A_Err callItem(void* refcon, std::int32_t thread, std::int32_t i, std::int32_t) {
    return (*static_cast<Item*>(refcon))(thread, i);
}

A_Err runItems(Executor& executor, int iterations, Item item,
               const std::atomic<bool>* cancel = nullptr) {
    return iterate(executor, iterations, &item, callItem, cancel);
}

class ExecutorTest : public testing::TestWithParam<ExecutorKind> {
protected:
    std::unique_ptr<Executor> make(int threads) { return makeExecutor(GetParam(), threads); }
};

TEST_P(ExecutorTest, RunsEachItemOnceForAnyCountAndThreads) {
    for (const int threads : {1, 2, 3, 8}) {
        const auto executor = make(threads);
        for (const int count : {0, 1, 2, 7, 127, 128, 129, 5000}) {
            std::vector<std::atomic<int>> seen(static_cast<std::size_t>(count));
            EXPECT_EQ(runItems(*executor, count,
                               [&](int, int i) { return seen[std::size_t(i)]++, PF_Err_NONE; }),
                      PF_Err_NONE);
            for (const auto& times : seen) ASSERT_EQ(times, 1) << count << " on " << threads;
        }
    }
}

TEST_P(ExecutorTest, NoTwoCallsAtOneTimeShareAThreadIndex) {
    const auto executor = make(4);
    std::atomic<bool> busy[4]{};
    std::atomic<int> clashes{0};
    runItems(*executor, 4000, [&](int thread, int) {
        if (busy[thread].exchange(true)) ++clashes;
        std::this_thread::yield();
        busy[thread] = false;
        return PF_Err_NONE;
    });
    EXPECT_EQ(clashes, 0);
}

TEST_P(ExecutorTest, OneThreadCountGivesEachIndexTheSameItemsInAscendingOrder) {
    const auto executor = make(3);
    const auto schedule = [&] {
        std::vector<std::vector<int>> items(3);
        runItems(*executor, 1000, [&](int thread, int i) {
            items[std::size_t(thread)].push_back(i);
            return PF_Err_NONE;
        });
        return items;
    };
    const auto first = schedule();
    for (const auto& items : first) {
        EXPECT_GT(items.size(), 300u) << "the items are shared evenly";
        EXPECT_TRUE(std::is_sorted(items.begin(), items.end()));
    }
    EXPECT_EQ(schedule(), first);
}

TEST_P(ExecutorTest, ResultIsThatOfTheFirstFailingItemInOrder) {
    const auto executor = make(3);
    std::vector<std::atomic<bool>> ran(6000);
    const A_Err result = runItems(*executor, 6000, [&](int, int i) -> A_Err {
        ran[std::size_t(i)] = true;
        return i >= 4000 ? i : PF_Err_NONE;
    });
    EXPECT_EQ(result, 4000);
    for (int i = 0; i < 4000; ++i) ASSERT_TRUE(ran[std::size_t(i)]) << i;
    EXPECT_FALSE(ran[5999]) << "a failure ends the iteration";
}

TEST_P(ExecutorTest, AnIntegerThrownByAnItemArrivesOnTheCallingThread) {
    const auto executor = make(2);
    const auto thrower = [](int, int i) -> A_Err {
        if (i == 777) throw 516;
        return PF_Err_NONE;
    };
    EXPECT_THAT([&] { runItems(*executor, 1000, thrower); }, testing::Throws<int>(516));
    EXPECT_EQ(runItems(*executor, 10, [](int, int) { return PF_Err_NONE; }), PF_Err_NONE)
        << "the executor stays usable";
}

TEST_P(ExecutorTest, OtherExceptionsEndTheProcess) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(
        {
            const auto executor = make(2);
            runItems(*executor, 100, [](int, int) -> A_Err { throw std::string("no int"); });
        },
        "");
}

TEST_P(ExecutorTest, CancelStopsBeforeTheNextChunk) {
    const auto executor = make(2);
    std::atomic<bool> cancel{false};
    std::atomic<int> ran{0};
    const auto item = [&](int, int i) {
        ++ran;
        if (i == 0) cancel = true;
        while (!cancel) std::this_thread::yield();
        return PF_Err_NONE;
    };
    EXPECT_EQ(runItems(*executor, 100000, item, &cancel), PF_Interrupt_CANCEL);
    EXPECT_LT(ran, 5000);

    ran = 0;
    EXPECT_EQ(runItems(*executor, 10, item, &cancel), PF_Interrupt_CANCEL);
    EXPECT_EQ(ran, 0) << "a cancel that stands already lets nothing begin";
}

std::vector<ExecutorKind> kindsOfThisBuild() {
    std::vector<ExecutorKind> kinds{ExecutorKind::Threads};
    if (hasExecutor(ExecutorKind::Tbb)) kinds.push_back(ExecutorKind::Tbb);
    return kinds;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ExecutorTest, testing::ValuesIn(kindsOfThisBuild()),
                         [](const auto& kind) {
                             return kind.param == ExecutorKind::Tbb ? "Tbb" : "Threads";
                         });

}  // namespace
}  // namespace headless
