#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "cli/ExposureCheck.h"
#include "cli/PixelAspect.h"

namespace cli {
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

TEST(ExposureCheck, NamesTheLargestThatSuits) {
    EXPECT_FALSE(suitableExposure(35.0, 0.0, 1.0).has_value());
    EXPECT_FALSE(suitableExposure(-30.0, 0.0, 100.0).has_value());
    for (const double largest : {4.5, 64.0, 240.0, 5000.0, 65504.0}) {
        const auto suitable = suitableExposure(10.0, 0.5, largest);
        ASSERT_TRUE(suitable.has_value()) << largest;
        EXPECT_FALSE(suitableExposure(*suitable, 0.5, largest).has_value()) << largest;
        EXPECT_GT(*suitable * (largest - 0.5), 35.0 * 0.49) << largest;
    }
    EXPECT_EQ(suitableExposure(10.0, 0.0, 1e9).value(), 0.0);
}

}  // namespace
}  // namespace cli
