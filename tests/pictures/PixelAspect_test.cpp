// SPDX-License-Identifier: Apache-2.0
#include "pictures/PixelAspect.h"

#include <gtest/gtest.h>

#include <sstream>

namespace pictures {
namespace {

TEST(PixelAspect, BecomesARatioThatTheEffectCanRead) {
    std::ostringstream said;
    Messages messages(said, false);
    const auto ratio = [&](double aspect) {
        const PF_RationalScale scale = aspectRatio(aspect, "shot.exr", messages);
        return std::to_string(scale.num) + "/" + std::to_string(scale.den);
    };
    const std::pair<double, const char*> cases[] = {
        {1.0, "1/1"}, {1.009, "1/1"}, {0.995, "1/1"}, {1.9999999, "2/1"}, {4.0 / 3.0, "4/3"}};
    for (const auto& [aspect, text] : cases) EXPECT_EQ(ratio(aspect), text);
    EXPECT_EQ(said.str(), "");
    EXPECT_EQ(ratio(10.0 / 11.0), "1/1");
    EXPECT_NE(said.str().find("shot.exr"), std::string::npos);
}

}  // namespace
}  // namespace pictures
