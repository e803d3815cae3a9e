// SPDX-License-Identifier: Apache-2.0
// Colour spaces through the built tool.
#include <gmock/gmock.h>

#include <cmath>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::FloatNear;
using testing::HasSubstr;
using testing::Not;

class ToolColour : public FolderTest {
protected:
    static constexpr int kSide = 16;

    // A left and a right half of these values.
    template <class Value>
    void write(const std::string& name, Value left, Value right) const {
        std::vector<Value> values;
        for (int i = 0; i < kSide * kSide; ++i) {
            values.insert(values.end(), 3, i % kSide < kSide / 2 ? left : right);
        }
        writeValues(path(name),
                    imageSpec(kSide, kSide, {"R", "G", "B"}, OIIO::BaseTypeFromC<Value>::value),
                    values);
    }
    // Renders with a radius of 4. Returns what is printed.
    std::string render(const std::string& input, const std::string& output,
                       std::vector<std::string> options = {}) const {
        options.insert(options.begin(),
                       {"render", path(input), "-o", path(output), "--blur-radius", "4"});
        const ToolRun run = runTool(options);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return run.err;
    }
    std::vector<float> values(const std::string& name) const {
        return readValues<float>(path(name));
    }
};

TEST_F(ToolColour, AResultHasTheSameLightInAnotherFormat) {
    write("in.exr", 0.18F, 0.18F);
    EXPECT_THAT(render("in.exr", "out.tga"),
                HasSubstr("out.tga is encoded as sRGB: " + path("in.exr") + " is linear\n"));
    EXPECT_THAT(readValues<std::uint8_t>(path("out.tga")), Each(118));
    write<std::uint8_t>("in.png", 118, 118);
    EXPECT_THAT(render("in.png", "back.exr", {"--exposure", "0"}),
                HasSubstr("is encoded as linear: " + path("in.png") + " is taken as sRGB\n"));
    EXPECT_THAT(values("back.exr"), Each(FloatNear(0.1812F, 2e-4F)));
    EXPECT_THAT(render("in.exr", "out.png", {"--raw"}), Not(HasSubstr("encoded")));
    EXPECT_THAT(values("out.png"), Each(FloatNear(0.18F, 1e-4F)));
    OIIO::ImageSpec found;
    readValues<float>(path("out.png"), &found);
    EXPECT_EQ(found.get_float_attribute("oiio:Gamma"), 1.0F);
    // Such a file says what it is.
    render("out.png", "again.exr");
    EXPECT_THAT(values("again.exr"), Each(FloatNear(0.18F, 1e-4F)));
    render("in.png", "out.exr", {"--color-in", "Gamma2.2", "--colour-out", "Rec709"});
    const double light = std::pow(118.0 / 255.0, 2.2);
    EXPECT_NEAR(values("out.exr")[0], 1.0993 * std::pow(light, 0.45) - 0.0993, 1e-3);
}

TEST_F(ToolColour, LinearLightMakesEdgesBrighterAndLeavesOutExposure) {
    write<std::uint8_t>("in.png", 0, 255);
    write<std::uint8_t>("grey.png", 118, 118);
    EXPECT_EQ(render("in.png", "plain.png", {"--exposure", "0"}), "");
    EXPECT_THAT(render("in.png", "linear.png", {"--linear"}), HasSubstr("with Exposure 0"));
    const auto plain = values("plain.png");
    const auto linear = values("linear.png");
    const std::size_t edge = 3 * (kSide * kSide / 2 + kSide / 2);
    EXPECT_GT(linear[edge], plain[edge] + 0.1F);
    EXPECT_EQ(linear[0], 0.0F);
    render("grey.png", "flat.png", {"--linear"});
    EXPECT_THAT(readValues<std::uint8_t>(path("flat.png")), Each(118));

    write("light.exr", 0.0F, 30.0F);
    EXPECT_THAT(render("light.exr", "usual.exr"), HasSubstr("with Exposure 0"));
    EXPECT_EQ(render("light.exr", "zero.exr", {"--exposure", "0"}), "");
    EXPECT_EQ(values("usual.exr"), values("zero.exr"));
    EXPECT_EQ(render("light.exr", "one.exr", {"--exposure", "1"}), "");
    EXPECT_NE(values("usual.exr"), values("one.exr"));
}

TEST_F(ToolColour, NamesAreThoseOfTheConfiguration) {
    write("in.exr", 0.25F, 0.25F);
    writeText(path("c.ocio"), R"(ocio_profile_version: 1
strictparsing: false
roles: {default: plain, scene_linear: plain}
displays: {d: [!<View> {name: v, colorspace: squared}]}
colorspaces:
  - !<ColorSpace> {name: plain}
  - !<ColorSpace>
    name: squared
    to_reference: !<ExponentTransform> {value: [2, 2, 2, 1]}
)");
    render("in.exr", "out.exr", {"--ocio", path("c.ocio"), "--colour-out", "squared"});
    EXPECT_THAT(values("out.exr"), Each(FloatNear(0.5F, 1e-5F)));
    const auto refused = [&](const std::vector<std::string>& options, int code) {
        std::vector<std::string> all{"render", path("in.exr"), "-o", path("no.exr")};
        all.insert(all.end(), options.begin(), options.end());
        const ToolRun run = runTool(all);
        EXPECT_EQ(run.exitCode, code) << run.err;
        return run.err;
    };
    EXPECT_THAT(refused({"--colour-in", "X", "--ocio", path("c.ocio")}, 2),
                AllOf(HasSubstr("\"X\""), HasSubstr("KodakLog"), HasSubstr("plain, squared")));
    EXPECT_THAT(refused({"--ocio", path("in.exr")}, 1), HasSubstr("OpenColorIO"));
    EXPECT_THAT(refused({"--raw", "--linear"}, 2), HasSubstr("--linear"));
    setenv("OCIO", path("c.ocio").c_str(), 1);
    render("in.exr", "out.exr", {"--colour-in", "squared"});
    setenv("OCIO", path("missing").c_str(), 1);
    EXPECT_THAT(render("in.exr", "raw.exr"), HasSubstr("warning: cannot read"));
    unsetenv("OCIO");
    EXPECT_THAT(values("out.exr"), Each(FloatNear(0.0625F, 1e-5F)));
}

// The same numbers in a file that would be taken as sRGB and in one of linear light.
TEST_F(ToolColour, ADepthMapIsData) {
    write<std::uint8_t>("in.png", 0, 255);
    write<std::uint8_t>("map.png", 128, 128);
    write("map.exr", 128.0F / 255.0F, 128.0F / 255.0F);
    for (const std::string map : {"map.png", "map.exr"}) {
        render("in.png", "by-" + map,
               {"--linear", "--depth-map-layer", path(map), "--focal-distance", "1"});
    }
    runTool({"render", path("by-map.exr"), "-o", path("codes.png"), "--blur-radius", "0"});
    const auto expected = readValues<std::uint8_t>(path("by-map.png"));
    const auto found = readValues<std::uint8_t>(path("codes.png"));
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) ASSERT_NEAR(found[i], expected[i], 2) << i;
}

}  // namespace
}  // namespace test
