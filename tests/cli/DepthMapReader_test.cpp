#include "cli/DepthMapReader.h"

#include <cmath>
#include <sstream>

#include "cli/Errors.h"
#include "cli/TestFiles.h"

namespace cli {
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
    // The red values that the effect would get.
    std::vector<float> read(const DepthMapping& mapping, const std::string& name = "z.exr") {
        m_said.str("");
        Messages messages(m_said, false);
        const DepthMap map = readDepthMap(path(name), mapping, messages);
        m_bits = headless::bitsOfFormat(map.world->format());
        m_range = map.range;
        std::vector<float> values;
        for (int x = 0; x < map.world->width(); ++x) values.push_back(map.world->get(x, 0).red);
        return values;
    }
    void expectNear(const std::vector<float>& found, const std::vector<float>& expected) const {
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) EXPECT_NEAR(found[i], expected[i], 1e-6);
    }

    std::ostringstream m_said;
    DepthRange m_range;
    int m_bits = 0;
};

TEST_F(DepthMapReader, NearAndFarBecomeOneAndZero) {
    writeDistances({2.0F, 6.0F, 10.0F, 1.0F, 50.0F, -3.0F});
    expectNear(read({.near = 2.0, .far = 10.0}), {1.0F, 0.5F, 0.0F, 1.0F, 0.0F, 1.0F});
    EXPECT_EQ(m_said.str(), "");
    EXPECT_EQ(m_bits, 32);
}

TEST_F(DepthMapReader, InverseSpreadsTheNearDistances) {
    writeDistances({2.0F, 4.0F, 10.0F, 1.0F, 50.0F, 0.0F, -3.0F});
    expectNear(read({.near = 2.0, .far = 10.0, .inverse = true}),
               {1.0F, 0.375F, 0.0F, 1.0F, 0.0F, 1.0F, 1.0F});
    const double endless = std::numeric_limits<double>::infinity();
    const auto values = read({.near = 2.0, .far = endless, .inverse = true});
    EXPECT_NEAR(values[1], 0.5F, 1e-6);
    EXPECT_NEAR(values[4], 0.04F, 1e-6);
}

TEST_F(DepthMapReader, TheSkyIsFarAndOutsideTheRange) {
    writeDistances({3.0F, kInfinity, NAN, 1e10F, -kInfinity, 9.0F, 999e6F});
    const auto values = read({.near = 3.0, .far = 9.0});
    expectNear(values, {1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F});
    writeDistances({3.0F, kInfinity, NAN, 1e10F, 1e9F, 9.0F, 6.0F});
    expectNear(read({.automatic = true}), {1.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.5F});
    EXPECT_EQ(m_range.least, 3.0);
    EXPECT_EQ(m_range.most, 9.0);
    EXPECT_EQ(m_range.sky, 4U);
    EXPECT_EQ(m_said.str(), "");
}

TEST_F(DepthMapReader, OneDistanceForAllIsNear) {
    writeDistances({5.0F, 5.0F, kInfinity});
    expectNear(read({.automatic = true}), {1.0F, 1.0F, 0.0F});
}

TEST_F(DepthMapReader, ARangeNeedsDistances) {
    writeDistances({kInfinity, 1e10F});
    EXPECT_THROW(read({.automatic = true}), Failure);
    writeDistances({0.0F, 4.0F});
    EXPECT_THROW(read({.automatic = true, .inverse = true}), Failure);
}

TEST_F(DepthMapReader, WithoutAMappingDistancesAreWarnedAbout) {
    writeDistances({0.0F, 0.5F, 1.0F});
    expectNear(read({}), {0.0F, 0.5F, 1.0F});
    EXPECT_EQ(m_said.str(), "");
    writeDistances({0.25F, 80.0F, kInfinity});
    const auto values = read({});
    expectNear(values, {0.25F, 80.0F, 0.0F});  // the sky never reaches the effect
    const std::string said = m_said.str();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_NE(said.find("0.25 to 80"), std::string::npos) << said;
}

TEST_F(DepthMapReader, IntegerMapsKeepTheirBits) {
    test::writeValues<std::uint8_t>(path("z.png"), test::imageSpec(3, 1, {"Y"}, TypeDesc::UINT8),
                                    {0, 51, 255});
    expectNear(read({}, "z.png"), {0.0F, 0.2F, 1.0F});
    EXPECT_EQ(m_bits, 8);
    test::writeValues<std::uint16_t>(path("z.png"), test::imageSpec(1, 1, {"Y"}, TypeDesc::UINT16),
                                     {65535});
    expectNear(read({}, "z.png"), {1.0F});
    EXPECT_EQ(m_bits, 16);
}

TEST_F(DepthMapReader, WhatAFileDoesNotCoverIsFar) {
    auto made = test::imageSpec(1, 1, {"Z"}, TypeDesc::FLOAT);
    made.x = 1;
    made.full_width = 3;
    made.full_height = 1;
    test::writeValues<float>(path("z.exr"), made, {4.0F});
    expectNear(read({.near = 4.0, .far = 8.0}), {0.0F, 1.0F, 0.0F});
}

TEST_F(DepthMapReader, OneFileCanHoldPictureAndMap) {
    const auto made = test::imageSpec(1, 1, {"R", "G", "B", "depth.Z"}, TypeDesc::FLOAT);
    test::writeValues<float>(path("shot.exr"), made, {0.1F, 0.2F, 0.3F, 6.0F});
    expectNear(read({.near = 4.0, .far = 8.0}, "shot.exr:depth.Z"), {0.5F});
    expectNear(read({.near = 4.0, .far = 8.0}, "shot.exr:depth"), {0.5F});
    EXPECT_THROW(read({}, "shot.exr:depth.W"), Failure);
}

TEST(DepthMapping, OptionsHaveToFit) {
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_NO_THROW(requireConsistent({}));
    EXPECT_NO_THROW(requireConsistent({.near = 1.0, .far = endless, .inverse = true}));
    EXPECT_THROW(requireConsistent({.near = 1.0}), UsageError);
    EXPECT_THROW(requireConsistent({.far = 1.0}), UsageError);
    EXPECT_THROW(requireConsistent({.near = 2.0, .far = 2.0}), UsageError);
    EXPECT_THROW(requireConsistent({.near = 2.0, .far = 3.0, .automatic = true}), UsageError);
    EXPECT_THROW(requireConsistent({.near = 0.0, .far = 3.0, .inverse = true}), UsageError);
    EXPECT_THROW(requireConsistent({.near = 1.0, .far = endless}), UsageError);
    EXPECT_THROW(requireConsistent({.inverse = true}), UsageError);
}

}  // namespace
}  // namespace cli
