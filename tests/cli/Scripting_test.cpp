// SPDX-License-Identifier: Apache-2.0
// What scripts rely on: exit codes, how arguments are read, and what is said of them.
#include <gmock/gmock.h>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::HasSubstr;
using testing::Not;

class Scripting : public FolderTest {
protected:
    void SetUp() override {
        std::vector<float> values(16 * 12 * 3, 0.25F);
        values[5] = 50.0F;
        writeValues(path("bright.exr"), imageSpec(16, 12, {"R", "G", "B"}, TypeDesc::FLOAT),
                    values);
        writeValues<std::uint8_t>(path("grey.png"), imageSpec(16, 12, {"Y"}, TypeDesc::UINT8),
                                  std::vector<std::uint8_t>(16 * 12, 99));
    }
    // Renders an image to `output`.
    ToolRun render(const std::string& input, std::vector<std::string> options,
                   const std::string& output = "out.exr") const {
        options.insert(options.begin(),
                       {"render", path(input), "-o", path(output), "--blur-radius", "2"});
        return runTool(options);
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
};

TEST_F(Scripting, StrictMakesAWarningAnErrorButNotANote) {
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{"--exposure", "10", "--strict"},
          {"--exposure", "10", "--strict", "--quiet"}}) {
        const ToolRun run = render("bright.exr", more);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_EQ(run.err.rfind("orbel: Exposure 10 is too high", 0), 0U) << run.err;
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_FALSE(exists("out.exr"));
    }
    EXPECT_EQ(render("bright.exr", {}).exitCode, 0);
    // A note: a PNG can't hold floats.
    const ToolRun noted = render("bright.exr", {"--strict", "--exposure", "0"}, "out.png");
    EXPECT_EQ(noted.exitCode, 0) << noted.err;
    EXPECT_THAT(noted.err, HasSubstr("16 bits"));
    EXPECT_TRUE(exists("out.png"));
}

TEST_F(Scripting, ALostImageIsAnErrorUnlessForced) {
    const ToolRun lost = render("bright.exr", {"--exposure", "30"});
    EXPECT_EQ(lost.exitCode, 1);
    EXPECT_THAT(lost.err, HasSubstr("the image would be lost; use at most --exposure 0.6, or"));
    EXPECT_FALSE(exists("out.exr"));
    EXPECT_EQ(render("bright.exr", {"--exposure", "30", "--force"}).exitCode, 0);
    EXPECT_TRUE(exists("out.exr"));
}

TEST_F(Scripting, OptionsWithoutEffectNameWhatTheyNeed) {
    const auto said = [&](const std::vector<std::string>& options) {
        return render("grey.png", options).err;
    };
    EXPECT_THAT(
        said({"--resolution", "5"}),
        HasSubstr("--resolution has no effect as things are; add --depth-map-layer FILE\n"));
    EXPECT_THAT(said({"--focus-point-0=1,1"}),
                HasSubstr("add --depth-map-layer FILE and --use-focus-point on\n"));
    EXPECT_THAT(said({"--focus-point-0", "1,1", "--depth-map-layer", path("grey.png")}),
                HasSubstr("--focus-point-0 has no effect as things are; add --use-focus-point on"));
    EXPECT_THAT(said({"--custom-layer-channel", "red"}), HasSubstr("add --custom-blur-shape FILE"));
    EXPECT_THAT(said({"--resolution", "5", "--depth-map-layer", path("grey.png")}),
                Not(HasSubstr("has no effect")));
}

TEST_F(Scripting, CompareSaysWhereAndWritesTheDifference) {
    std::vector<float> values(100 * 80 * 3, 0.25F);
    const auto spec = imageSpec(100, 80, {"R", "G", "B"}, TypeDesc::FLOAT);
    writeValues(path("a.exr"), spec, values);
    values[3 * (70 * 100 + 90) + 1] = 0.75F;
    writeValues(path("b.exr"), spec, values);
    const ToolRun run =
        runTool({"compare", path("a.exr"), path("b.exr"), "--difference", path("d.exr"), "--json"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.out, HasSubstr("\"largest\": 0.5,"));
    EXPECT_THAT(run.out, HasSubstr("\"x\": 64,\n      \"y\": 64,\n      \"width\": 36,"));
    const auto difference = readValues<float>(path("d.exr"));
    EXPECT_EQ(difference[3 * (70 * 100 + 90) + 1], 0.5F);
    EXPECT_EQ(std::count(difference.begin(), difference.end(), 0.0F), 100 * 80 * 3 - 1);
    EXPECT_THAT(runTool({"compare", path("a.exr"), path("b.exr")}).out,
                HasSubstr("\n  36x16 pixels from 64,64: largest 0.5, mean "));
}

TEST_F(Scripting, CheckFindsFramesThatAreNotWhole) {
    for (const char* name : {"f.1.png", "f.2.png", "f.5.png"}) {
        std::filesystem::copy_file(path("grey.png"), path(name));
    }
    const std::string files = path("f.#.png");
    EXPECT_EQ(runTool({"check", files, "--frames", "1-2"}).exitCode, 0);
    writeText(path("f.4.png"), "");
    const std::string whole = readText(path("grey.png"));
    writeText(path("f.5.png"), whole.substr(0, whole.size() - 20));
    writeValues<std::uint8_t>(path("f.6.png"), imageSpec(4, 4, {"Y"}, TypeDesc::UINT8),
                              std::vector<std::uint8_t>(16, 99));
    const ToolRun run = runTool({"check", files});
    EXPECT_EQ(run.exitCode, 1);
    for (const char* line :
         {"3  missing\n", "4  empty\n", "5  unreadable: ", "6  4x4 pixels instead of 16x12\n",
          "6 frames checked, not whole: 3-6\n"}) {
        EXPECT_THAT(run.out, HasSubstr(line));
    }
    EXPECT_EQ(runTool({"check", path("g.#.png")}).exitCode, 1);
    EXPECT_EQ(runTool({"check", path("grey.png")}).exitCode, 2);
}

TEST_F(Scripting, CompareTellsDifferentFromNotCompared) {
    const auto compare = [&](const std::string& a, const std::string& b) {
        return runTool({"compare", path(a), path(b)}).exitCode;
    };
    writeText(path("text.png"), "no picture");
    writeValues<std::uint8_t>(path("small.png"), imageSpec(4, 4, {"Y"}, TypeDesc::UINT8),
                              std::vector<std::uint8_t>(16, 99));
    EXPECT_EQ(compare("grey.png", "grey.png"), 0);
    EXPECT_EQ(compare("grey.png", "bright.exr"), 1);
    EXPECT_EQ(compare("grey.png", "small.png"), 2);
    EXPECT_EQ(compare("grey.png", "text.png"), 2);
    EXPECT_EQ(compare("missing.png", "grey.png"), 2);
    EXPECT_EQ(runTool({"compare", path("grey.png")}).exitCode, 2);
    for (const char* command : {"render", "aperture", "compare"}) {
        EXPECT_THAT(runTool({command, "--help"}).out, HasSubstr("Exit codes: 0 ")) << command;
    }
    EXPECT_THAT(runTool({"--help"}).out, HasSubstr("130 interrupted"));
}

TEST_F(Scripting, TwoHyphensEndTheOptions) {
    // Names with a folder don't begin with a hyphen.
    struct Folder {
        Folder() : before(std::filesystem::current_path()) {}
        ~Folder() { std::filesystem::current_path(before); }
        const std::filesystem::path before;
    } const folder;
    std::filesystem::copy_file(path("grey.png"), path("-odd.png"));
    std::filesystem::current_path(path("."));
    const auto run = [](const std::vector<std::string>& arguments) { return runTool(arguments); };
    EXPECT_EQ(run({"compare", "--", "-odd.png", "grey.png"}).exitCode, 0);
    EXPECT_EQ(run({"compare", "grey.png", "--", "-odd.png"}).exitCode, 0);
    const ToolRun rendered =
        run({"render", "--blur-radius", "0", "-o", "out.png", "--", "-odd.png"});
    EXPECT_EQ(rendered.exitCode, 0) << rendered.err;
    EXPECT_TRUE(exists("out.png"));
    EXPECT_EQ(run({"compare", "grey.png", "grey.png", "--"}).exitCode, 0);
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{"--", "-odd.png", "x"}, {"x", "--", "-odd.png"}}) {
        std::vector<std::string> arguments{"compare", "grey.png"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        arguments.emplace_back("extra");
        const ToolRun extra = run(arguments);
        EXPECT_EQ(extra.exitCode, 2);
        EXPECT_THAT(extra.err, HasSubstr("unexpected argument"));
    }
    const ToolRun help = run({"render", "grey.png", "-o", "out.png", "--", "--help"});
    EXPECT_EQ(help.exitCode, 2);
    EXPECT_THAT(help.err, HasSubstr("unexpected argument --help"));
    EXPECT_THAT(run({"compare", "-odd.png", "grey.png", "grey.png"}).err,
                HasSubstr("unknown option -odd.png"));
}

TEST_F(Scripting, HelpIsACommandToo) {
    EXPECT_EQ(runTool({"help"}).out, runTool({"--help"}).out);
    EXPECT_EQ(runTool({"help", "help"}).out, runTool({"--help"}).out);
    for (const char* command : {"render", "compare", "aperture"}) {
        const ToolRun run = runTool({"help", command});
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.out, runTool({command, "--help"}).out);
        EXPECT_THAT(run.out, HasSubstr(std::string("orbel ") + command));
    }
    const ToolRun wrong = runTool({"help", "rendr"});
    EXPECT_EQ(wrong.exitCode, 2);
    EXPECT_THAT(wrong.err, HasSubstr("did you mean render?"));
}

TEST_F(Scripting, ChoicesCanBeShortenedWhileTheyAreUnique) {
    std::vector<std::uint8_t> slope;
    for (int i = 0; i < 8 * 4; ++i) slope.push_back(static_cast<std::uint8_t>(i % 8 * 36));
    writeValues(path("slope.png"), imageSpec(8, 4, {"Y"}, TypeDesc::UINT8), slope);
    const auto placed = [&](const std::string& choice) {
        const ToolRun run =
            render("bright.exr", {"--exposure", "0", "--resolution", "2", "--depth-map-layer",
                                  path("slope.png"), "--placement", choice});
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return readValues<float>(path("out.exr"));
    };
    const auto stretched = placed("2");
    EXPECT_EQ(placed("stretch"), stretched);
    EXPECT_EQ(placed("STRETCH-M"), stretched);
    EXPECT_NE(placed("c"), stretched);
    const std::pair<const char*, const char*> refused[] = {{"r", "is ambiguous: red or (r+g+b)/3"},
                                                           {"violet", "takes red (1), green (2)"},
                                                           {"", "takes red (1), green (2)"}};
    for (const auto& [choice, words] : refused) {
        const ToolRun run = render("grey.png", {"--custom-layer-channel", choice});
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_THAT(run.err, HasSubstr(words));
    }
    EXPECT_EQ(render("grey.png", {"--alpha", "ig", "--output-type", "uint1"}, "out.png").exitCode,
              0);
    const ToolRun either = render("grey.png", {"--output-type", "uint"}, "out.png");
    EXPECT_EQ(either.exitCode, 2);
    EXPECT_THAT(either.err, HasSubstr("takes uint8, uint16, half or float, not \"uint\""));
}

TEST_F(Scripting, WhatLiesOutsideIsNoted) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"--region", "10,-4,20,8"},
         "--region is cut to 10,0,6,4: the rest is outside the image, "},
        {{"--focus-point-1", "16.5,3"}, "--focus-point-1 is at 16.5,3, outside the image, "},
        {{"--focus-point-0", "-50%,50%"}, "--focus-point-0 is at -8,6, outside the image, "}};
    for (const auto& [options, words] : cases) {
        const ToolRun run = render("grey.png", options, "out.png");
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_THAT(run.err, testing::EndsWith("orbel: " + words + "which has 16x12 pixels\n"));
    }
    const ToolRun inside =
        render("grey.png", {"--region", "0,0,16,12", "--focus-point-0", "100%,0%"}, "out.png");
    EXPECT_THAT(inside.err, Not(HasSubstr("outside")));
    const ToolRun overscan =
        render("grey.png", {"--region", "-2,0,9,9", "--keep-overscan", "--edge-behavior", "off"},
               "out.png");
    EXPECT_EQ(overscan.err, "");
}

// A region may reach into the pixels beyond the display window, unless these are left out.
TEST_F(Scripting, RegionsAreCutToTheImageWithItsOverscan) {
    auto made = imageSpec(28, 24, {"Y"}, OIIO::TypeDesc::FLOAT);
    made.x = -4;
    made.y = -2;
    made.full_width = made.full_height = 20;
    writeValues(path("scan.exr"), made, std::vector<float>(std::size_t{28} * 24, 0.5F));
    EXPECT_THAT(render("scan.exr", {"--region", "18,18,4,4"}, "out.exr").err,
                Not(HasSubstr("--region")));
    EXPECT_THAT(render("scan.exr", {"--region", "-9,0,9,9"}, "out.exr").err,
                HasSubstr("cut to -4,0,4,9: the rest is outside the image, which has 28x24 pixels "
                          "from -4,-2\n"));
    EXPECT_THAT(
        render("scan.exr", {"--region", "18,18,4,4", "--crop-to-display"}, "out.exr").err,
        HasSubstr("cut to 18,18,2,2: the rest is outside the image, which has 20x20 pixels\n"));
}

TEST_F(Scripting, APgmIsGrey) {
    const ToolRun refused = render("bright.exr", {"--exposure", "0"}, "out.pgm");
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("PGM holds only grey"));
    EXPECT_FALSE(exists("out.pgm"));
    EXPECT_EQ(render("grey.png", {}, "out.PGM").exitCode, 0);
    EXPECT_EQ(readText(path("out.PGM")).substr(0, 2), "P5");
    EXPECT_EQ(render("grey.png", {}, "grey.ppm").exitCode, 0);
    EXPECT_EQ(readText(path("grey.ppm")).substr(0, 2), "P6");
    EXPECT_EQ(render("bright.exr", {"--exposure", "0"}, "out.ppm").exitCode, 0);
    EXPECT_EQ(readText(path("out.ppm")).substr(0, 2), "P6");
}

}  // namespace
}  // namespace test
