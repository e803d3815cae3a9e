// SPDX-License-Identifier: Apache-2.0
#include "host/Pixel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace {

using testing::FieldsAre;

TEST(Pixel, QuantizesWithHalfStepsUpAndClampsToTheRange) {
    PF_Pixel p;
    AEO::Pixel::setToU8({1.0f, 2.0f, -0.1f, 0.5f}, &p);
    EXPECT_THAT(p, FieldsAre(255, 255, 0, 128));
    AEO::Pixel::setToU8({NAN, 1e30f, -1e30f, 1.49f / 255}, &p);
    EXPECT_THAT(p, FieldsAre(0, 255, 0, 1));
    PF_Pixel16 deep;
    AEO::Pixel::setToU16({1.0f, 2.0f, -0.1f, 1.5f / 32768}, &deep);
    EXPECT_THAT(deep, FieldsAre(32768, 32768, 0, 2));
}

}  // namespace
