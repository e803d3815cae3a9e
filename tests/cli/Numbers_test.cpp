#include "cli/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "cli/Errors.h"
#include "cli/ExposureCheck.h"
#include "cli/PixelAspect.h"
#include "cli/Progress.h"

namespace cli {
namespace {

TEST(Numbers, FormsOfTheCommandLine) {
    EXPECT_EQ(parseRegion("--region", "-5,10,100,50"), (Window{-5, 10, 95, 60}));
    EXPECT_EQ(parseSize("--size", "320x200", 1000), (Window{0, 0, 320, 200}));
    EXPECT_EQ(parseRatio("--downsample", "2/3").den, 3U);
    EXPECT_EQ(parseRatio("--downsample", "1").den, 1U);
    EXPECT_EQ(parseBytes("--memory-limit", "3k"), 3072U);
    EXPECT_EQ(parseBytes("--memory-limit", "17"), 17U);
    EXPECT_TRUE(std::isinf(parseDistance("--depth-far", "inf")));
}

TEST(Numbers, OtherFormsAreRefused) {
    for (const char* text : {"1,2,3", "1,2,0,4", "1,2,3,4,5", "a,2,3,4", "1,2,3,99999999999", ""}) {
        EXPECT_THROW(parseRegion("--region", text), UsageError) << text;
    }
    for (const char* text : {"0/1", "1/0", "1/2/3", "-1/2", "/", "1/"}) {
        EXPECT_THROW(parseRatio("--downsample", text), UsageError) << text;
    }
    for (const char* text : {"10", "10x", "x10", "0x5", "10x2000", "10x5x2"}) {
        EXPECT_THROW(parseSize("--size", text, 1000), UsageError) << text;
    }
    for (const char* text : {"", "M", "0", "-1", "1T", "99999999999G"}) {
        EXPECT_THROW(parseBytes("--memory-limit", text), UsageError) << text;
    }
    EXPECT_THROW(parseWhole("--threads", "0", 1, 8), UsageError);
    EXPECT_THROW(parseWhole("--threads", "2.5", 1, 8), UsageError);
}

TEST(PixelAspect, BecomesARatioThatTheEffectCanRead) {
    std::ostringstream said;
    Messages messages(said, false);
    const auto ratio = [&](double aspect) {
        const PF_RationalScale scale = aspectRatio(aspect, "shot.exr", messages);
        return std::to_string(scale.num) + "/" + std::to_string(scale.den);
    };
    EXPECT_EQ(ratio(1.0), "1/1");
    EXPECT_EQ(ratio(1.009), "1/1");
    EXPECT_EQ(ratio(0.995), "1/1");
    EXPECT_EQ(ratio(2.0), "2/1");
    EXPECT_EQ(ratio(1.9999999), "2/1");  // truncated, it would be 1
    EXPECT_EQ(ratio(4.0 / 3.0), "4/3");
    EXPECT_EQ(said.str(), "");
    EXPECT_EQ(ratio(10.0 / 11.0), "1/1");
    EXPECT_NE(said.str().find("shot.exr"), std::string::npos);
}

TEST(ExposureCheck, NamesTheLargestThatSuits) {
    EXPECT_FALSE(suitableExposure(10.0, 0.0, 1.0).has_value());
    EXPECT_FALSE(suitableExposure(35.0, 0.0, 1.0).has_value());
    EXPECT_FALSE(suitableExposure(-30.0, 0.0, 100.0).has_value());
    EXPECT_FALSE(suitableExposure(30.0, 0.9, 0.5).has_value());
    for (const double largest : {4.5, 64.0, 240.0, 5000.0, 65504.0}) {
        const auto suitable = suitableExposure(10.0, 0.5, largest);
        ASSERT_TRUE(suitable.has_value()) << largest;
        EXPECT_FALSE(suitableExposure(*suitable, 0.5, largest).has_value()) << largest;
        EXPECT_GT(*suitable * (largest - 0.5), 35.0 * 0.49) << largest;
    }
    EXPECT_EQ(suitableExposure(10.0, 0.0, 1e9).value(), 0.0);
}

TEST(Progress, ShowsShareAndTimeLeft) {
    const std::string text = progressText(0.25, std::chrono::seconds(30));
    EXPECT_NE(text.find("[##########          "), std::string::npos) << text;
    EXPECT_NE(text.find(" 25 %"), std::string::npos) << text;
    EXPECT_NE(text.find("1:30 left"), std::string::npos) << text;
    EXPECT_EQ(progressText(0.0, std::chrono::seconds(1)).find("left"), std::string::npos);
}

TEST(Progress, IsSilentUnlessVisible) {
    std::ostringstream screen;
    { Progress(screen, false).update(1, 2); }
    EXPECT_EQ(screen.str(), "");
    { Progress(screen, true).update(1, 2); }
    EXPECT_NE(screen.str().find("50 %"), std::string::npos);
    EXPECT_TRUE(screen.str().ends_with(" \r"));  // and the line is cleared at the end
}

}  // namespace
}  // namespace cli
