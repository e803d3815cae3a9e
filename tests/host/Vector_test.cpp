// SPDX-License-Identifier: Apache-2.0
#include "host/Vector.h"

#include <cstdint>
#include <cstring>

#include "support/HostFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Vector : public ContextFixture {};

TEST_F(Vector, AsksTheHostOnlyForMoreThanItHas) {
    AEO::Vector<double> vector(*context);
    EXPECT_THAT(callsOf([&] { vector.reserve(0); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { vector.resize(3); }),
                ElementsAre("host_new_handle 32", "host_get_handle_size", "host_lock_handle"));
    vector[2] = 3.5;
    EXPECT_THAT(callsOf([&] { vector.reserve(2); }), IsEmpty());
    // Grows to the exact size, and frees the old block last.
    EXPECT_THAT(callsOf([&] { vector.reserve(7); }),
                ElementsAre("host_new_handle 64", "host_get_handle_size", "host_lock_handle",
                            "host_unlock_handle", "host_dispose_handle"));
    EXPECT_EQ(vector.capacity(), 7u);
    EXPECT_EQ(vector.size(), 3u);
    EXPECT_EQ(vector[2], 3.5);
}

TEST_F(Vector, ZeroesAddedElementsOnly) {
    AEO::Vector<double> vector(*context);
    vector.reserve(3);
    std::memset(vector.data(), 0xEE, 3 * sizeof(double));
    vector.resize(1);
    vector[0] = 7.0;
    vector.resize(2);
    EXPECT_EQ(vector[0], 7.0);
    EXPECT_EQ(vector[1], 0.0);
    vector[1] = 7.0;
    vector.resize(1);
    EXPECT_EQ(vector.data()[1], 7.0) << "shrinking touched memory";
    vector.resize(2);
    EXPECT_EQ(vector[1], 0.0);
}

TEST_F(Vector, StaysAsItWasWhenMemoryIsShort) {
    AEO::Vector<double> vector(*context);
    vector.resize(2);
    double* const data = vector.data();
    host.failAt(headless::Operation::kNewHandle, 1);
    EXPECT_THAT(callsOf([&] { vector.resize(10); }), ElementsAre("host_new_handle 88"));
    host.failAt(headless::Operation::kLockHandle, 1);
    vector.resize(10);
    EXPECT_THAT(callsOf([&] { vector.resize(SIZE_MAX / sizeof(double)); }), IsEmpty())
        << "the byte count doesn't fit";
    context->in_data = nullptr;
    EXPECT_THAT(callsOf([&] { vector.resize(10); }), IsEmpty()) << "no host to ask";
    context->in_data = &in_data;
    EXPECT_EQ(vector.data(), data);
    EXPECT_EQ(vector.size(), 2u);
}

TEST_F(Vector, RefusesAShrunkenHandleWithoutLockingIt) {
    AEO::Vector<double> vector(*context);
    host.failures().shrinkHandleAt(1);
    EXPECT_THAT(callsOf([&] { vector.resize(10); }),
                ElementsAre("host_new_handle 88", "host_get_handle_size", "host_dispose_handle"));
    EXPECT_EQ(vector.data(), nullptr);
}

}  // namespace
