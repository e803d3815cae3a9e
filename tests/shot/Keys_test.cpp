// SPDX-License-Identifier: Apache-2.0
#include "shot/Keys.h"

#include <gmock/gmock.h>

namespace shot {
namespace {

using testing::HasSubstr;

std::string refusal(const std::string& text) {
    try {
        splitKeys(text);
    } catch (const KeyError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(Keys, ATextIsSplitIntoFramesValuesAndInterpolations) {
    EXPECT_FALSE(hasKeys("0.2"));
    EXPECT_FALSE(hasKeys("10%,20%"));
    EXPECT_TRUE(hasKeys("-5:0.2"));
    const auto keys = splitKeys("-5:0.2,0:10%/20%:hold,999999999:split:smooth");
    ASSERT_EQ(keys.size(), 3U);
    EXPECT_EQ(std::pair(keys[0].frame, keys[0].value), std::pair(-5, std::string("0.2")));
    EXPECT_EQ(keys[0].interpolation, std::nullopt);
    EXPECT_EQ(keys[1].value, "10%/20%");
    EXPECT_EQ(keys[1].interpolation, Interpolation::kHold);
    EXPECT_EQ(keys[2].frame, kLastFrame);
    EXPECT_EQ(keys[2].interpolation, Interpolation::kSmooth);
}

TEST(Keys, TextsWithoutAMeaningAreRefusedWithTheReason) {
    const std::pair<const char*, const char*> cases[] = {
        {"5:", "FRAME:VALUE"},
        {"5:1,", "FRAME:VALUE"},
        {"5:1:hold:1", "FRAME:VALUE"},
        {"a:1", "\"a\" is no frame"},
        {"1.5:1", "\"1.5\" is no frame"},
        {":1", "is no frame"},
        {"1000000000:1", "more than nine digits"},
        {"99999999999999999999:1", "more than nine digits"},
        {"3:1,2:1", "frame 2 comes after 3"},
        {"3:1,3:1", "frame 3 has two keys"},
        {"3:1:soft", "hold, linear or smooth, not \"soft\""}};
    for (const auto& [text, words] : cases) EXPECT_THAT(refusal(text), HasSubstr(words)) << text;
}

TEST(Keys, TextsAreWrittenAsTheyAreRead) {
    EXPECT_EQ(textOf({{0, 0.1}}), "0.1");
    EXPECT_EQ(textOf({{0, Point{1.5, -2, false}}}), "1.5,-2");
    EXPECT_EQ(textOf({{1, Point{50, 25, true}, Interpolation::kSmooth}, {2, Point{0, 0, true}}}),
              "1:50%/25%:smooth,2:0%/0%");
    EXPECT_EQ(textOf({{1, true}, {2, false, Interpolation::kHold}}), "1:on,2:off:hold");
}

}  // namespace
}  // namespace shot
