// SPDX-License-Identifier: Apache-2.0
#include "headless/Executor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <thread>
#include <vector>

namespace headless {
namespace {

using Item = std::function<A_Err(int thread, int i)>;

A_Err runItems(Executor& executor, int iterations, Item item) {
    const auto call = [](void* refcon, std::int32_t thread, std::int32_t i, std::int32_t) {
        return (*static_cast<Item*>(refcon))(thread, i);
    };
    return iterate(executor, iterations, &item, call);
}

using ExecutorTest = testing::TestWithParam<ExecutorKind>;

using Schedule = std::array<std::vector<int>, kThreadIndices>;

// The items that each thread index gets, in order; none gets two at the same time.
Schedule schedule(Executor& executor, int count) {
    Schedule items;
    std::array<std::atomic<bool>, kThreadIndices> busy{};
    const auto item = [&](int thread, int i) {
        const auto t = static_cast<std::size_t>(thread);
        EXPECT_FALSE(busy[t].exchange(true));
        items[t].push_back(i);
        busy[t] = false;
        return PF_Err_NONE;
    };
    EXPECT_EQ(runItems(executor, count, item), PF_Err_NONE);
    return items;
}

TEST_P(ExecutorTest, ThreadIndicesGetTheSameItemsFromAnyNumberOfWorkers) {
    for (const int count : {0, 1, 63, 64, 129, 5000}) {
        const Schedule alone = schedule(*makeExecutor(GetParam(), 1), count);
        int next = 0;
        for (const auto& items : alone) {
            for (const int i : items) EXPECT_EQ(i, next++) << "neither ascending nor contiguous";
            EXPECT_LE(items.size(), static_cast<std::size_t>(count / kThreadIndices + 1));
        }
        EXPECT_EQ(next, count);
        for (const int workers : {2, 3, 8}) {
            EXPECT_EQ(schedule(*makeExecutor(GetParam(), workers), count), alone) << workers;
        }
    }
}

TEST_P(ExecutorTest, WorkersShareUnevenWork) {
    // The first share waits until all others are done: somebody else has to take them.
    const auto executor = makeExecutor(GetParam(), 2);
    std::atomic<int> others{0};
    const auto item = [&](int thread, int) {
        while (thread == 0 && others < kThreadIndices - 1) std::this_thread::yield();
        if (thread != 0) ++others;
        return PF_Err_NONE;
    };
    EXPECT_EQ(runItems(*executor, kThreadIndices, item), PF_Err_NONE);
}

TEST_P(ExecutorTest, ResultIsThatOfTheFirstFailingItemInOrder) {
    const auto executor = makeExecutor(GetParam(), 3);
    std::vector<std::atomic<bool>> ran(6000);
    const A_Err result = runItems(*executor, 6000, [&](int, int i) -> A_Err {
        ran[std::size_t(i)] = true;
        return i >= 4000 ? i : PF_Err_NONE;
    });
    EXPECT_EQ(result, 4000);
    for (int i = 0; i < 4000; ++i) ASSERT_TRUE(ran[std::size_t(i)]) << i;
    EXPECT_FALSE(ran[5999]) << "a failure ends the iteration";
}

TEST_P(ExecutorTest, AnIntegerThrownByAnItemArrivesOnTheCallingThreadAndNothingElseCrosses) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    const auto thrower = [](int, int i) -> A_Err {
        if (i == 777) throw 516;
        return PF_Err_NONE;
    };
    EXPECT_THAT([&] { runItems(*makeExecutor(GetParam(), 2), 1000, thrower); },
                testing::Throws<int>(516));
    EXPECT_DEATH(runItems(*makeExecutor(GetParam(), 2), 100,
                          [](int, int) -> A_Err { throw std::string("no int"); }),
                 "");
}

std::vector<ExecutorKind> kindsOfThisBuild() {
    std::vector<ExecutorKind> kinds{ExecutorKind::kThreads};
    if (hasExecutor(ExecutorKind::kTbb)) kinds.push_back(ExecutorKind::kTbb);
    return kinds;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ExecutorTest, testing::ValuesIn(kindsOfThisBuild()),
                         [](const auto& kind) {
                             return kind.param == ExecutorKind::kTbb ? "Tbb" : "Threads";
                         });

}  // namespace
}  // namespace headless
