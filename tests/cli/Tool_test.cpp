// SPDX-License-Identifier: Apache-2.0
// The built tool as users see it: exit codes, messages, files.
#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::AllOf;
using testing::HasSubstr;

class Tool : public FolderTest {
protected:
    void SetUp() override {
        std::vector<std::uint8_t> values;
        for (int i = 0; i < 40 * 30; ++i) {
            const int light = i % 97 == 0 ? 255 : i % 40;
            for (const int value : {light, light / 2, 40}) {
                values.push_back(static_cast<std::uint8_t>(value));
            }
        }
        writeValues(path("photo.png"), imageSpec(40, 30, {"R", "G", "B"}, TypeDesc::UINT8), values);
    }
    // Renders the photo, or another image, to `output`.
    ToolRun render(std::vector<std::string> options, const std::string& output = "out.png",
                   const std::string& input = "photo.png") const {
        options.insert(options.begin(), {"render", path(input), "-o", path(output)});
        return runTool(options);
    }
    OIIO::ImageSpec specOf(const std::string& name) const {
        OIIO::ImageSpec found;
        readValues<float>(path(name), &found);
        return found;
    }
};

std::size_t lines(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

void expectRefusal(const ToolRun& run, int code, const std::string& words) {
    EXPECT_EQ(run.exitCode, code) << run.err;
    EXPECT_EQ(lines(run.err), 1U) << run.err;
    EXPECT_THAT(run.err, HasSubstr(words));
}

TEST_F(Tool, UsageErrorsAreOneLineAndCodeTwo) {
    using Case = std::pair<std::vector<std::string>, const char*>;
    const Case commands[] = {
        {{}, "no command"},
        {{"rendr"}, "did you mean render?"},
        {{"render"}, "INPUT is required"},
        {{"render", path("photo.png")}, "--output is required"},
        {{"--nonsense", "about"}, "--nonsense"},
        {{"params", "--blur-radius", "3"}, "--state"},
        {{"scene", path("out.png")}, ".exr"},
        {{"scene", path("a.exr"), "--depth", path("a.exr")}, "two files"},
        {{"compare", path("photo.png"), path("photo.png"), "--tolerance", "-1"}, "--tolerance"}};
    for (const auto& [arguments, words] : commands) expectRefusal(runTool(arguments), 2, words);
    const Case options[] = {{{"--blur-raduis", "3"}, "did you mean --blur-radius?"},
                            {{"--blur-radius", "501"}, "a number from 0.0 to 500.0"},
                            {{"--blur-radius", "3x"}, "0.0 to 500.0"},
                            {{"--blur-radius"}, "--blur-radius"},
                            {{"--vertices", "7.5"}, "a whole number from 3 to 10"},
                            {{"--edge-behavior", "perhaps"}, "on or off"},
                            {{"--composite-mode", "both"}, "normal (1) or split (2)"},
                            {{"--focus-point-0", "50%,3"}, "--focus-point-0"},
                            {{"--region", "100,100,5,5"}, "40x30"},
                            {{"--downsample", "2/1"}, "--downsample"},
                            {{"--downsample", "1/0"}, "--downsample"},
                            {{"--memory-limit", "99999999999G"}, "--memory-limit"},
                            {{"--region", "1,2,0,4"}, "--region"},
                            {{"--bits", "12"}, "8, 16 or 32"},
                            {{"--pixel-aspect", "0"}, "--pixel-aspect"},
                            {{"--depth-auto"}, "--depth-map-layer"},
                            {{"--depth-near", "1"}, "belong together"},
                            {{"--depth-near", "2", "--depth-far", "2"}, "must be less"},
                            {{"--depth-inverse"}, "--depth-map-layer"}};
    for (const auto& [arguments, words] : options) expectRefusal(render(arguments), 2, words);
    expectRefusal(render({}, "out.xyz"), 2, ".exr");
    expectRefusal(render({}, "photo.png"), 2, "can't be the output");
    EXPECT_EQ(names(), std::vector<std::string>{"photo.png"});
}

TEST_F(Tool, OtherFailuresAreOneLineAndCodeOne) {
    writeText(path("notes.png"), "no picture");
    writeText(path("out.png"), "earlier");
    writeValues<std::uint8_t>(path("black.png"), imageSpec(4, 4, {"Y"}, TypeDesc::UINT8),
                              std::vector<std::uint8_t>(16, 0));
    expectRefusal(render({}, "out.png", "missing.png"), 1, "missing.png");
    expectRefusal(render({}, "out.png", "notes.png"), 1, "notes.png");
    expectRefusal(render({}, "no/such/folder/out.png"), 1, "no folder");
    expectRefusal(render({"--custom-blur-shape", path("black.png")}), 1, "black.png");
    expectRefusal(render({"--depth-map-layer", path("photo.png:Z")}), 1, "has no layer");
    expectRefusal(render({"--bundle", path("none.so")}), 1, "none.so");
    expectRefusal(render({"--bundle", path("photo.png")}), 1, "is not a loadable file");
    expectRefusal(render({"--memory-limit", "100k"}), 1, "out of memory");
    EXPECT_EQ(readText(path("out.png")), "earlier");
}

TEST_F(Tool, HelpAndVersionNeedNoBundle) {
    EXPECT_EQ(runTool({"--version"}).out.rfind("orbel ", 0), 0U);
    EXPECT_THAT(runTool({"--help"}).out, HasSubstr("compare"));
    EXPECT_THAT(runTool({"about"}).out, HasSubstr("Orbel"));
    EXPECT_THAT(runTool({"render", "--bundle", path("none.so"), "--help"}).out,
                AllOf(HasSubstr("--keep-overscan"), HasSubstr("none.so")));
    EXPECT_THAT(runTool({"render", "--help"}).out,
                AllOf(HasSubstr("--focus-point-0-1-interpolation"),
                      HasSubstr("--depth-map-channel"), HasSubstr("--custom-blur-shape")));
}

TEST_F(Tool, RadiusZeroCopies) {
    for (const char* bits : {"8", "16", "32"}) {
        EXPECT_EQ(render({"--blur-radius", "0", "--bits", bits}).exitCode, 0);
        EXPECT_EQ(runTool({"compare", path("photo.png"), path("out.png")}).exitCode, 0) << bits;
    }
}

TEST_F(Tool, ABlurIsQuietOnAPipeAndTheSameTwice) {
    const ToolRun run = render({"--blur-radius", "5", "--vertices", "6", "--threads", "2"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out + run.err, "");
    const ToolRun again =
        render({"--blur-radius", "5", "--vertices", "6", "--threads", "2", "--stats"}, "again.png");
    EXPECT_THAT(again.out, HasSubstr("2 threads; peak memory"));
    EXPECT_EQ(runTool({"compare", path("out.png"), path("again.png")}).exitCode, 0);
    const ToolRun apart = runTool({"compare", path("photo.png"), path("out.png")});
    EXPECT_EQ(apart.exitCode, 1);
    EXPECT_THAT(apart.out, HasSubstr("largest difference"));
    EXPECT_EQ(runTool({"compare", path("photo.png"), path("out.png"), "--tolerance", "1"}).exitCode,
              0);
}

TEST_F(Tool, SizesFollowRegionDownsampleAndOverscan) {
    EXPECT_EQ(render({"--downsample", "1/4", "--region", "0,0,20,30"}).exitCode, 0);
    EXPECT_EQ(specOf("out.png").width, 5);
    EXPECT_EQ(specOf("out.png").height, 8);
    render({"--blur-radius", "6", "--edge-behavior", "off", "--keep-overscan"}, "out.exr");
    EXPECT_EQ(specOf("out.exr").x, -6);
    EXPECT_EQ(specOf("out.exr").width, 52);
    EXPECT_EQ(specOf("out.exr").full_width, 40);
}

TEST_F(Tool, WarnsOnceAndCounts) {
    std::vector<float> values(16 * 16 * 4, 0.25F);
    values[0] = NAN;
    values[5] = HUGE_VALF;
    values[11] = 0.0F;  // an alpha
    writeValues(path("odd.exr"), imageSpec(16, 16, {"R", "G", "B", "A"}, TypeDesc::FLOAT), values);
    const ToolRun run = render({"--exposure", "0"}, "odd.png", "odd.exr");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_THAT(run.err, AllOf(HasSubstr("2 non-finite values"),
                               HasSubstr("1 pixel with colour but alpha 0")));
    // The others: a PNG holds at most 16 bits, and is encoded as sRGB.
    EXPECT_EQ(lines(run.err), 4U) << run.err;
    const ToolRun clipped = render({"--exposure", "0", "--bits", "8"}, "odd.png", "odd.exr");
    EXPECT_THAT(clipped.err, HasSubstr("1 pixel too bright for 8 bits"));
    const ToolRun bright = render({"--exposure", "10"}, "lost.png", "odd.exr");
    EXPECT_EQ(bright.exitCode, 1);
    EXPECT_THAT(bright.err, HasSubstr("use at most --exposure"));
    EXPECT_FALSE(std::filesystem::exists(path("lost.png")));
    const ToolRun forced =
        render({"--quiet", "--force", "--exposure", "10"}, "lost.png", "odd.exr");
    EXPECT_EQ(forced.exitCode, 0);
    EXPECT_EQ(forced.err, "");
}

TEST_F(Tool, ParamsTellTheirState) {
    const ToolRun plain = runTool({"params"});
    EXPECT_EQ(plain.exitCode, 0);
    EXPECT_EQ(plain.out.find("greyed out"), std::string::npos);
    EXPECT_EQ(lines(plain.out), 27U);  // a heading, 25 controls and the group's name
    const ToolRun table = runTool({"params", "--state"});
    EXPECT_THAT(table.out, HasSubstr("Center Map greyed out"));
    const ToolRun state = runTool({"params", "--state", "--depth-map-layer", path("photo.png"),
                                   "--use-focus-point", "on", "--json"});
    const auto enabled = [&](const std::string& label) {
        const std::size_t said =
            state.out.find("\"enabled\": ", state.out.find("\"label\": \"" + label + "\""));
        return said != std::string::npos && state.out.compare(said + 11, 4, "true") == 0;
    };
    EXPECT_FALSE(enabled("Focal Distance"));
    EXPECT_TRUE(enabled("Focus Point 0"));
    EXPECT_TRUE(enabled("Profile"));
    EXPECT_FALSE(enabled("Custom Layer Channel"));
}

TEST_F(Tool, ADepthMapKeepsItsPlaneSharp) {
    runTool({"scene", path("s.exr"), "--size", "96x54", "--depth", path("z.exr")});
    const ToolRun run =
        render({"--exposure", "0", "--blur-radius", "8", "--resolution", "3", "--depth-map-layer",
                path("z.exr:Z"), "--depth-near", "1", "--depth-far", "3", "--focal-distance", "0"},
               "far.exr", "s.exr");
    EXPECT_EQ(run.exitCode, 0) << run.err;
    render({"--exposure", "0", "--blur-radius", "8"}, "all.exr", "s.exr");
    const auto scene = readValues<float>(path("s.exr"));
    const auto far = readValues<float>(path("far.exr"));
    const auto all = readValues<float>(path("all.exr"));
    const auto distances = readValues<float>(path("z.exr"));
    double sharp = 0.0;
    double soft = 0.0;
    for (std::size_t i = 0; i < distances.size(); ++i) {
        if (distances[i] < 4.0F) continue;
        sharp += std::fabs(static_cast<double>(far[3 * i]) - scene[3 * i]);
        soft += std::fabs(static_cast<double>(all[3 * i]) - scene[3 * i]);
    }
    EXPECT_LT(sharp, 0.3 * soft);
}

TEST_F(Tool, ControlCCancelsAndLeavesNothing) {
    runTool({"scene", path("s.exr"), "--size", "1280x720", "--depth", path("z.exr")});
    writeText(path("out.exr"), "earlier");
    const auto before = names();
    // Takes minutes, and prints the range of the depth map before the frame begins.
    const ToolRun run =
        runTool({"render", path("s.exr"), "-o", path("out.exr"), "--exposure", "0", "--blur-radius",
                 "150", "--resolution", "16", "--depth-map-layer", path("z.exr"), "--depth-auto"},
                true);
    EXPECT_EQ(run.exitCode, 130) << run.err;
    EXPECT_EQ(run.out.rfind("depth: 1.7 (near) to ", 0), 0U) << run.out;
    EXPECT_TRUE(run.err.ends_with("\norbel: cancelled\n")) << run.err;
    EXPECT_EQ(readText(path("out.exr")), "earlier");
    EXPECT_EQ(names(), before);
}

}  // namespace
}  // namespace test
