// The built tool as a user meets it: exit codes, messages, files.
#include <cmath>

#include "cli/RunTool.h"
#include "cli/TestFiles.h"

namespace cli::test {
namespace {

using OIIO::TypeDesc;

class Tool : public FolderTest {
protected:
    void SetUp() override {
        FolderTest::SetUp();
        std::vector<std::uint8_t> values;
        for (int i = 0; i < 40 * 30; ++i) {
            const int light = i % 97 == 0 ? 255 : i % 40;
            for (const int value : {light, light / 2, 40}) {
                values.push_back(static_cast<std::uint8_t>(value));
            }
        }
        writeValues(path("photo.png"), imageSpec(40, 30, {"R", "G", "B"}, TypeDesc::UINT8), values);
    }
    // Renders the photo, or another picture, to `output`.
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
    EXPECT_NE(run.err.find(words), std::string::npos) << run.err;
}

TEST_F(Tool, UsageErrorsAreOneLineAndCodeTwo) {
    expectRefusal(runTool({}), 2, "no command");
    expectRefusal(runTool({"rendr"}), 2, "did you mean render?");
    expectRefusal(runTool({"render"}), 2, "INPUT is required");
    expectRefusal(runTool({"render", path("photo.png")}), 2, "--output is required");
    expectRefusal(runTool({"--nonsense", "about"}), 2, "--nonsense");
    expectRefusal(render({"--blur-raduis", "3"}), 2, "did you mean --blur-radius?");
    expectRefusal(render({"--blur-radius", "501"}), 2, "0.0 to 500.0");
    expectRefusal(render({"--blur-radius"}), 2, "--blur-radius");
    expectRefusal(render({"--composite-mode", "both"}), 2, "normal (1) or split (2)");
    expectRefusal(render({"--region", "100,100,5,5"}), 2, "40x30");
    expectRefusal(render({"--downsample", "2/1"}), 2, "--downsample");
    expectRefusal(render({"--bits", "12"}), 2, "8, 16 or 32");
    expectRefusal(render({"--pixel-aspect", "1/2"}), 2, "--pixel-aspect");
    expectRefusal(render({"--depth-auto"}), 2, "--depth-map-layer");
    expectRefusal(render({}, "out.xyz"), 2, ".exr");
    expectRefusal(render({}, "photo.png"), 2, "can't be the output");
    expectRefusal(runTool({"params", "--blur-radius", "3"}), 2, "--state");
    expectRefusal(runTool({"scene", path("out.png")}), 2, ".exr");
    expectRefusal(runTool({"scene", path("a.exr"), "--depth", path("a.exr")}), 2, "two files");
    expectRefusal(runTool({"compare", path("photo.png"), path("photo.png"), "--tolerance", "-1"}),
                  2, "--tolerance");
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
    expectRefusal(render({"--memory-limit", "100k"}), 1, "out of memory");
    expectRefusal(runTool({"compare", path("photo.png"), path("black.png")}), 1, "differ in size");
    EXPECT_EQ(readText(path("out.png")), "earlier");
}

TEST_F(Tool, HelpAndVersionNeedNoBundle) {
    EXPECT_EQ(runTool({"--version"}).out.rfind("orbel ", 0), 0U);
    EXPECT_NE(runTool({"--help"}).out.find("compare"), std::string::npos);
    const ToolRun without = runTool({"render", "--bundle", path("none.so"), "--help"});
    EXPECT_EQ(without.exitCode, 0);
    EXPECT_NE(without.out.find("--keep-overscan"), std::string::npos);
    EXPECT_NE(without.out.find("none.so"), std::string::npos) << "the reason is missing";
    const ToolRun with = runTool({"render", "--help"});
    EXPECT_NE(with.out.find("--focus-point-0-1-interpolation"), std::string::npos);
    EXPECT_NE(with.out.find("--depth-map-channel"), std::string::npos);
}

TEST_F(Tool, RadiusZeroCopies) {
    for (const char* bits : {"8", "16", "32"}) {
        EXPECT_EQ(render({"--blur-radius", "0", "--bits", bits}).exitCode, 0);
        EXPECT_EQ(runTool({"compare", path("photo.png"), path("out.png")}).exitCode, 0) << bits;
        EXPECT_EQ(specOf("out.png").format, TypeDesc::UINT8);
    }
}

TEST_F(Tool, ABlurIsQuietOnAPipeAndTheSameTwice) {
    const ToolRun run = render({"--blur-radius", "5", "--vertices", "5", "--threads", "2"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out + run.err, "");
    render({"--blur-radius", "5", "--vertices", "5", "--threads", "2"}, "again.png");
    EXPECT_EQ(runTool({"compare", path("out.png"), path("again.png")}).exitCode, 0);
    const ToolRun apart = runTool({"compare", path("photo.png"), path("out.png")});
    EXPECT_EQ(apart.exitCode, 1);
    EXPECT_NE(apart.out.find("largest difference"), std::string::npos);
    EXPECT_EQ(runTool({"compare", path("photo.png"), path("out.png"), "--tolerance", "1"}).exitCode,
              0);
    const ToolRun stats = render({"--stats", "--threads", "2"});
    EXPECT_NE(stats.out.find("on 2 threads; peak of host memory"), std::string::npos) << stats.out;
}

TEST_F(Tool, ARegionIsThatPartOfTheWhole) {
    render({"--blur-radius", "4"}, "whole.png");
    EXPECT_EQ(render({"--blur-radius", "4", "--region", "7,3,20,10"}, "part.png").exitCode, 0);
    const auto whole = readValues<std::uint8_t>(path("whole.png"));
    const auto part = readValues<std::uint8_t>(path("part.png"));
    ASSERT_EQ(part.size(), 20U * 10U * 3U);
    for (std::size_t i = 0; i < part.size(); ++i) {
        const std::size_t y = i / 60 + 3;
        const std::size_t x = i % 60 + 21;
        ASSERT_NEAR(part[i], whole[y * 120 + x], 1) << i;
    }
}

TEST_F(Tool, DownsampleShrinksTheResult) {
    EXPECT_EQ(render({"--downsample", "1/4", "--region", "0,0,20,30"}).exitCode, 0);
    EXPECT_EQ(specOf("out.png").width, 5);
    EXPECT_EQ(specOf("out.png").height, 8);
}

TEST_F(Tool, OverscanGrowsByTheReach) {
    const std::vector<std::string> options{"--blur-radius", "6", "--edge-behavior", "off",
                                           "--keep-overscan"};
    EXPECT_EQ(render(options, "out.exr").exitCode, 0);
    const OIIO::ImageSpec exr = specOf("out.exr");
    EXPECT_EQ(exr.x, -6);
    EXPECT_EQ(exr.width, 52);
    EXPECT_EQ(exr.full_width, 40);
    EXPECT_EQ(exr.nchannels, 4);
    EXPECT_EQ(render(options, "out.png").exitCode, 0);
    EXPECT_EQ(specOf("out.png").height, 42);
}

TEST_F(Tool, WarnsOnceAndCounts) {
    std::vector<float> values(16 * 16 * 4, 0.25F);
    values[0] = NAN;
    values[5] = HUGE_VALF;
    values[11] = 0.0F;  // an alpha
    writeValues(path("odd.exr"), imageSpec(16, 16, {"R", "G", "B", "A"}, TypeDesc::FLOAT), values);
    const ToolRun run = render({"--exposure", "0"}, "odd.png", "odd.exr");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.err.find("2 values not finite"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("1 pixel with colour but alpha 0"), std::string::npos) << run.err;
    EXPECT_EQ(lines(run.err), 3U) << run.err;  // and that a PNG holds 16 bits at most
    const ToolRun clipped = render({"--exposure", "0", "--bits", "8"}, "odd.png", "odd.exr");
    EXPECT_NE(clipped.err.find("1 pixel too bright for 8 bits"), std::string::npos) << clipped.err;
    const ToolRun bright = render({"--exposure", "10"}, "odd.png", "odd.exr");
    EXPECT_NE(bright.err.find("the largest that suits is --exposure"), std::string::npos);
    EXPECT_EQ(render({"--quiet", "--exposure", "10"}, "odd.png", "odd.exr").err, "");
}

TEST_F(Tool, ParamsTellTheirState) {
    const ToolRun plain = runTool({"params"});
    EXPECT_EQ(plain.exitCode, 0);
    EXPECT_EQ(plain.out.find("greyed out"), std::string::npos);
    EXPECT_EQ(lines(plain.out), 27U);  // a heading, 25 controls and the group's name
    const ToolRun state = runTool({"params", "--state", "--depth-map-layer", path("photo.png"),
                                   "--use-focus-point", "on", "--json"});
    const auto enabled = [&](const std::string& label) {
        const std::size_t at = state.out.find("\"label\": \"" + label + "\"");
        const std::size_t said = state.out.find("\"enabled\": ", at);
        EXPECT_NE(said, std::string::npos) << label;
        return state.out.compare(said + 11, 4, "true") == 0;
    };
    EXPECT_FALSE(enabled("Focal Distance"));
    EXPECT_TRUE(enabled("Focus Point 0"));
    EXPECT_TRUE(enabled("Profile"));
    EXPECT_FALSE(enabled("Custom Layer Channel"));
    EXPECT_NE(runTool({"about"}).out.find("Orbel"), std::string::npos);
}

TEST_F(Tool, TheSceneIsTheSameEveryTimeAndHasDepth) {
    EXPECT_EQ(
        runTool({"scene", path("a.exr"), "--size", "64x36", "--depth", path("z.exr")}).exitCode, 0);
    EXPECT_EQ(runTool({"scene", path("b.exr"), "--size", "64x36"}).exitCode, 0);
    EXPECT_EQ(readText(path("a.exr")), readText(path("b.exr")));
    const auto light = readValues<float>(path("a.exr"));
    EXPECT_GT(*std::max_element(light.begin(), light.end()), 20.0F);
    const auto distances = readValues<float>(path("z.exr"));
    EXPECT_EQ(specOf("z.exr").channelnames, std::vector<std::string>{"Z"});
    EXPECT_GT(
        std::count_if(distances.begin(), distances.end(), [](float z) { return std::isinf(z); }),
        100);
    const auto nearer = [&](float limit) {
        return std::count_if(distances.begin(), distances.end(),
                             [=](float z) { return z < limit; });
    };
    EXPECT_GT(nearer(3.0F), 20);
    EXPECT_GT(nearer(20.0F) - nearer(5.0F), 100);
    EXPECT_GT(nearer(1000.0F) - nearer(30.0F), 10);
}

TEST_F(Tool, ADepthMapKeepsItsPlaneSharp) {
    runTool({"scene", path("s.exr"), "--size", "96x54", "--depth", path("z.exr")});
    const ToolRun run =
        render({"--exposure", "0", "--blur-radius", "8", "--resolution", "4", "--depth-map-layer",
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
    // Minutes of work, of which the depth's range is printed before the frame begins.
    const ToolRun run = interruptTool({"render", path("s.exr"), "-o", path("out.exr"), "--exposure",
                                       "0", "--blur-radius", "150", "--resolution", "16",
                                       "--depth-map-layer", path("z.exr"), "--depth-auto"});
    EXPECT_EQ(run.exitCode, 130) << run.err;
    EXPECT_EQ(run.out.rfind("depth: 1.7 (near) to ", 0), 0U) << run.out;
    EXPECT_EQ(run.err, "orbel: cancelled\n");
    EXPECT_EQ(readText(path("out.exr")), "earlier");
    EXPECT_EQ(names(), before);
}

}  // namespace
}  // namespace cli::test
