// SPDX-License-Identifier: Apache-2.0
#include "headless/World.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace headless {
namespace {

using testing::FieldsAre;

TEST(Reduce, TakesTheMeanOfWhatAPixelCoversWithColourByAlpha) {
    World source(3, 2, PF_PixelFormat_ARGB128);
    source.fill({0, 9, 9, 9});
    source.set(0, 0, {1, 0.2F, 0, 4});
    source.set(1, 1, {0.5F, 0.8F, 0, 1});
    source.set(2, 0, {1, 0.25F, 0.5F, 0.75F});
    ASSERT_EQ(reducedSize(3, {1, 2}), 2);
    const auto half = reduce(source, {1, 2}, {1, 2}, {0, 0, 2, 1}, PF_PixelFormat_ARGB128);
    EXPECT_THAT(half->get(0, 0),
                FieldsAre(1.5F / 4, testing::FloatEq((0.2F + 0.5F * 0.8F) / 1.5F), 0, 3));
    // The last column covers only one pixel.
    EXPECT_THAT(half->get(1, 0), FieldsAre(0.5F, 0.25F, 0.5F, 0.75F));
}

}  // namespace
}  // namespace headless
