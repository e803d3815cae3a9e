// SPDX-License-Identifier: Apache-2.0
// The command `orbel aperture` as users see it.
#include <gmock/gmock.h>

#include <cmath>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::HasSubstr;

class ApertureTool : public FolderTest {
protected:
    ToolRun draw(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "aperture");
        return runTool(arguments);
    }
};

TEST_F(ApertureTool, WritesEveryFormatWithTheBitsItHolds) {
    using Case = std::tuple<std::string, std::string, TypeDesc>;
    for (const auto& [name, bits, type] :
         {Case{"a.exr", "", TypeDesc::FLOAT}, Case{"b.exr", "16", TypeDesc::HALF},
          Case{"a.png", "", TypeDesc::UINT16}, Case{"b.png", "8", TypeDesc::UINT8},
          Case{"a.tif", "16", TypeDesc::UINT16}, Case{"a.jpg", "", TypeDesc::UINT8},
          Case{"a.hdr", "", TypeDesc::FLOAT}, Case{"a.pgm", "8", TypeDesc::UINT8}}) {
        std::vector<std::string> arguments{"soft", "-o", path(name), "--size", "20"};
        if (!bits.empty()) arguments.insert(arguments.end(), {"--bits", bits});
        const ToolRun run = draw(arguments);
        EXPECT_EQ(run.exitCode, 0) << name << run.err;
        EXPECT_EQ(run.out + run.err, "");
        OIIO::ImageSpec found;
        const auto values = readValues<float>(path(name), &found);
        EXPECT_EQ(found.format, type) << name;
        EXPECT_EQ(found.width, 20);
        const auto channels = static_cast<std::size_t>(found.nchannels);
        EXPECT_NEAR(values[(10 * 20 + 10) * channels], 0.985, 0.01) << name;
        EXPECT_EQ(values[0], 0.0F) << name;
    }
}

TEST_F(ApertureTool, IsTheShapeOfAPointOfLight) {
    constexpr std::size_t kSide = 64;
    std::vector<float> dot(kSide * kSide, 0.0F);
    dot[kSide * 32 + 32] = 100.0F;
    writeValues(path("dot.exr"), imageSpec(kSide, kSide, {"Y"}, TypeDesc::FLOAT), dot);
    for (const char* shape : {"ring.exr", "ring.png"}) {
        EXPECT_EQ(draw({"ring", "--obstruction", "0.5", "-o", path(shape)}).exitCode, 0);
        const ToolRun run =
            runTool({"render", path("dot.exr"), "-o", path("out.exr"), "--exposure", "0",
                     "--blur-radius", "20", "--custom-blur-shape", path(shape)});
        EXPECT_EQ(run.exitCode, 0) << run.err;
        const auto out = readValues<float>(path("out.exr"));
        const double level = 100.0 / (std::acos(-1.0) * 20.0 * 20.0 * 0.75);
        EXPECT_NEAR(out[kSide * 32 + 32], 0.0, 1e-3 * level) << shape;
        EXPECT_NEAR(out[kSide * 32 + 32 + 15], level, 0.1 * level) << shape;
        EXPECT_NEAR(out[kSide * (32 - 15) + 32], level, 0.1 * level) << shape;
        EXPECT_NEAR(out[kSide * 32 + 32 + 22], 0.0, 1e-3 * level) << shape;
    }
}

TEST_F(ApertureTool, ListsAllKindsAndDrawsThemOnASheet) {
    const ToolRun run = draw({"--list", "-o", path("sheet.png"), "--size", "24"});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    for (const char* kind : {"ring", "soft", "bubble", "blades", "anamorphic", "star", "heart",
                             "onion", "dust", "--obstruction", "a whole number from 3 to 24"}) {
        EXPECT_THAT(run.out, HasSubstr(kind));
    }
    OIIO::ImageSpec found;
    readValues<float>(path("sheet.png"), &found);
    EXPECT_EQ(found.width, 3 * 24 + 4 * 3);
}

TEST_F(ApertureTool, RefusesWhatAKindDoesNotHave) {
    using Case = std::pair<std::vector<std::string>, const char*>;
    const std::string out = path("out.png");
    const Case cases[] = {
        {{}, "KIND is required"},
        {{"heart"}, "--output is required"},
        {{"hart", "-o", out}, "one of ring, soft, bubble"},
        {{"star", "-o", out, "--obstruction", "0.5"},
         "star has no --obstruction; its options are --count, --inner, --rotation"},
        {{"ring", "-o", out, "--obstruction", "1"}, "a number from 0 to 0.95"},
        {{"ring", "-o", out, "--obstruction", "wide"}, "a number from 0 to 0.95"},
        {{"blades", "-o", out, "--count", "6.5"}, "a whole number from 3 to 24"},
        {{"dust", "-o", out, "--seed", "-1"}, "a whole number from 0 to 2147483647"},
        {{"ring", "-o", out, "--size", "15"}, "from 16 to 4096"},
        {{"ring", "-o", out, "--bits", "32"}, "8, 16 for PNG"},
        {{"ring", "-o", path("out.xyz")}, ".exr"},
        {{"ring", "--list"}, "leave out ring"},
        {{"--list", "--seed", "2"}, "leave out --seed"},
        {{"--list", "-o", out, "--size", "2000"}, "from 16 to 1024"}};
    for (const auto& [arguments, words] : cases) {
        const ToolRun run = draw(arguments);
        EXPECT_EQ(run.exitCode, 2) << words;
        EXPECT_THAT(run.err, HasSubstr(words));
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
    }
    EXPECT_TRUE(names().empty());
}

}  // namespace
}  // namespace test
