// SPDX-License-Identifier: Apache-2.0
#include "headless/Executor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <set>
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

// The items that each thread index gets, in order; none gets two at the same time.
std::array<std::vector<int>, 8> schedule(Executor& executor, int count) {
    std::array<std::vector<int>, 8> items;
    std::array<std::atomic<bool>, 8> busy{};
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

TEST_P(ExecutorTest, EachThreadIndexSeesTheSameItemsInAscendingOrder) {
    for (const int threads : {1, 2, 3, 8}) {
        const auto executor = makeExecutor(GetParam(), threads);
        for (const int count : {0, 1, 127, 128, 129, 5000}) {
            const auto first = schedule(*executor, count);
            EXPECT_EQ(schedule(*executor, count), first);
            std::set<int> all;
            std::size_t most = 0;
            for (const auto& items : first) {
                EXPECT_TRUE(std::is_sorted(items.begin(), items.end()));
                all.insert(items.begin(), items.end());
                most = std::max(most, items.size());
            }
            EXPECT_EQ(all.size(), static_cast<std::size_t>(count));
            EXPECT_TRUE(all.empty() || *all.rbegin() == count - 1);
            EXPECT_LE(most, 1.2 * count / threads + 128) << "uneven";
        }
    }
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
