// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthMapReader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

#include "pictures/Errors.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

using OIIO::TypeDesc;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

class DepthMapReader : public test::FolderTest {
protected:
    void writeDistances(const std::vector<float>& distances) const {
        const int width = static_cast<int>(distances.size());
        test::writeValues(path("z.exr"), test::imageSpec(width, 1, {"Z"}, TypeDesc::FLOAT),
                          distances);
    }
    // The red values that the effect gets.
    std::vector<float> read(const DepthMapping& mapping, const std::string& name = "z.exr") {
        said.str("");
        Messages messages(said, false);
        const DepthMap map = readDepthMap(path(name), mapping, messages);
        bits = headless::bitsOfFormat(map.world->format());
        range = map.range;
        std::vector<float> values;
        for (int x = 0; x < map.world->width(); ++x) values.push_back(map.world->get(x, 0).red);
        return values;
    }
    void expect(const std::vector<float>& distances, const DepthMapping& mapping,
                const std::vector<float>& values) {
        writeDistances(distances);
        EXPECT_THAT(read(mapping), testing::Pointwise(testing::FloatNear(1e-6F), values));
    }

    std::ostringstream said;
    DepthRange range;
    int bits = 0;
};

TEST_F(DepthMapReader, DistancesBecomeOneAtNearAndZeroAtFar) {
    expect({2, 6, 10, 1, 50, -3}, {.near = 2.0, .far = 10.0}, {1, 0.5F, 0, 1, 0, 1});
    expect({2, 4, 10, 1, 50, 0, -3}, {.near = 2.0, .far = 10.0, .inverse = true},
           {1, 0.375F, 0, 1, 0, 1, 1});
    expect({4, 50}, {.near = 2.0, .far = HUGE_VAL, .inverse = true}, {0.5F, 0.04F});
    expect({5, 5, kInfinity}, {.automatic = true}, {1, 1, 0});
    EXPECT_EQ(bits, 32);
}

TEST_F(DepthMapReader, TheSkyIsFarAndOutsideTheRange) {
    expect({3, kInfinity, NAN, 1e10F, -kInfinity, 9, 999e6F}, {.near = 3.0, .far = 9.0},
           {1, 0, 0, 0, 0, 0, 0});
    expect({3, kInfinity, NAN, 1e10F, 1e9F, 9, 6}, {.automatic = true}, {1, 0, 0, 0, 0, 0, 0.5F});
    EXPECT_EQ(range.least, 3.0);
    EXPECT_EQ(range.most, 9.0);
    EXPECT_EQ(range.sky, 4U);
    EXPECT_EQ(said.str(), "");
    writeDistances({kInfinity, 1e10F});
    EXPECT_THROW(read({.automatic = true}), Failure);
    writeDistances({0.0F, 4.0F});
    EXPECT_THROW(read({.automatic = true, .inverse = true}), Failure);
}

TEST_F(DepthMapReader, WithoutAMappingDistancesAreWarnedAbout) {
    expect({0, 0.5F, 1}, {}, {0, 0.5F, 1});
    EXPECT_EQ(said.str(), "");
    expect({0.25F, 80, kInfinity}, {}, {0.25F, 80, 0});  // the sky never reaches the effect
    EXPECT_THAT(said.str(), testing::HasSubstr("0.25 to 80"));
}

TEST_F(DepthMapReader, IntegerMapsKeepTheirBits) {
    test::writeValues<std::uint8_t>(path("z.png"), test::imageSpec(3, 1, {"Y"}, TypeDesc::UINT8),
                                    {0, 51, 255});
    EXPECT_THAT(read({}, "z.png"), testing::ElementsAre(0, testing::FloatEq(0.2F), 1));
    EXPECT_EQ(bits, 8);
}

}  // namespace
}  // namespace pictures
