// SPDX-License-Identifier: Apache-2.0
#include "shot/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <vector>

namespace test {
namespace {

TEST(InParallel, CallsEachIndexOnceWithAsManyJobsAsAsked) {
    for (const int jobs : {1, 3, 100}) {
        std::vector<std::atomic<int>> calls(50);
        std::atomic<int> running = 0;
        std::atomic<int> most = 0;
        shot::inParallel(calls.size(), jobs, [&](std::size_t index) {
            const int now = ++running;
            for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) continue;
            ++calls[index];
            --running;
            return true;
        });
        for (const auto& count : calls) EXPECT_EQ(count, 1);
        EXPECT_LE(most, jobs);
    }
    shot::inParallel(0, 2, [](std::size_t) -> bool { throw std::logic_error("never"); });
}

TEST(InParallel, EndsWithTheFirstFailure) {
    std::atomic<int> calls = 0;
    shot::inParallel(100, 1, [&](std::size_t index) {
        ++calls;
        return index != 10;
    });
    EXPECT_EQ(calls, 11);
    EXPECT_THROW(shot::inParallel(100, 2,
                                  [](std::size_t index) -> bool {
                                      if (index == 3) throw std::runtime_error("broken");
                                      return true;
                                  }),
                 std::runtime_error);
}

TEST(Memory, IsKnownHere) {
    ASSERT_TRUE(shot::availableMemory());
    EXPECT_GT(*shot::availableMemory(), 1U << 20);
}

}  // namespace
}  // namespace test
