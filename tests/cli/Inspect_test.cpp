// SPDX-License-Identifier: Apache-2.0
// orbel inspect, on stripes at three distances.
#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr int kWidth = 96;
constexpr int kHeight = 40;
constexpr float kDistances[] = {2.0F, 5.0F, 40.0F};  // metres, from left to right

class Inspect : public FolderTest {
protected:
    void SetUp() override {
        std::vector<float> stripes;
        std::vector<float> distances;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const int x = i % kWidth;
            stripes.insert(stripes.end(), 3, x % 2 == 0 ? 0.8F : 0.1F);
            distances.push_back(kDistances[x / 32]);
        }
        write("in.exr", {"R", "G", "B"}, stripes);
        write("z.exr", {"Z"}, distances);
    }
    void write(const std::string& name, const std::vector<std::string>& channels,
               const std::vector<float>& values) const {
        writeValues(path(name), imageSpec(kWidth, kHeight, channels, OIIO::TypeDesc::FLOAT),
                    values);
    }
    // Words that end with .exr or .png, and "out", are in the folder.
    ToolRun run(const std::string& command, const std::string& words) const {
        std::vector<std::string> all = {command};
        std::istringstream stream(words);
        for (std::string word; stream >> word;) {
            const bool file = word.ends_with(".exr") || word.ends_with(".png") || word == "out";
            all.push_back(file ? path(word) : word);
        }
        return runTool(all);
    }
    ToolRun inspect(const std::string& words) const { return run("inspect", words); }
    // The number after `label` in what the tool printed.
    static double numberAfter(const std::string& text, const std::string& label) {
        const std::size_t place = text.find(label);
        EXPECT_NE(place, std::string::npos) << text;
        return place == std::string::npos ? -1.0 : std::stod(text.substr(place + label.size()));
    }
    static constexpr const char* kBlur =
        "in.exr --depth-map-layer z.exr --blur-radius 8 --roundness 1 --resolution 16 ";
};

TEST_F(Inspect, DrawsAFolderOrASheet) {
    const std::string words = std::string(kBlur) + "--focus 5 ";
    ToolRun done = inspect(words + "-o out");
    ASSERT_EQ(done.exitCode, 0) << done.err;
    std::vector<std::string> drawn;
    for (const auto& entry : std::filesystem::directory_iterator(path("out"))) {
        drawn.push_back(entry.path().filename().string());
    }
    EXPECT_THAT(drawn, testing::UnorderedElementsAre("aperture.png", "spots.png", "radius.png",
                                                     "depth.png", "histogram.png"));
    done = inspect(words + "-o sheet.png");
    ASSERT_EQ(done.exitCode, 0) << done.err;
    const std::string sheet = readText(path("sheet.png"));
    ASSERT_EQ(inspect(words + "-o again.png --threads 1").exitCode, 0);
    EXPECT_EQ(readText(path("again.png")), sheet);
    done = inspect(words + "--occlusion -o occluded.png");
    EXPECT_EQ(done.exitCode, 0) << done.err;
}

TEST_F(Inspect, WithoutADepthMapDrawsTheAperture) {
    const ToolRun done = inspect("in.exr -o out");
    EXPECT_EQ(done.exitCode, 0) << done.err;
    EXPECT_THAT(done.err, HasSubstr("no depth map"));
    EXPECT_TRUE(std::filesystem::exists(path("out") + "/aperture.png"));
    EXPECT_FALSE(std::filesystem::exists(path("out") + "/spots.png"));
}

TEST_F(Inspect, TellsDepthAndRadiusAtAPixel) {
    // Focused on the nearest, which is 1: the farthest has the whole radius.
    const ToolRun far = inspect(std::string(kBlur) + "--focus 2 --at 80,20");
    ASSERT_EQ(far.exitCode, 0) << far.err;
    EXPECT_NEAR(numberAfter(far.out, "depth at 80,20: "), 40.0, 1e-3);
    EXPECT_NEAR(numberAfter(far.out, "40, "), 0.0, 1e-6);
    EXPECT_NEAR(numberAfter(far.out, "blur radius: "), 8.5, 0.03 * 8.5);
    const ToolRun near = inspect(std::string(kBlur) + "--focus 2 --at 5%,5%");
    EXPECT_NEAR(numberAfter(near.out, "blur radius: "), 0.0, 0.01);
}

TEST_F(Inspect, TheOptionsItTellsPutAPixelIntoFocus) {
    const std::vector<float> sharp = readValues<float>(path("in.exr"));
    const std::string blurred = std::string(kBlur) + "--focal-distance 0.6 --at ";
    const std::string rendered = std::string(kBlur) + "--raw -o out.exr ";
    for (const int x : {16, 48, 80}) {
        const std::string at = std::to_string(x) + ",20";
        const ToolRun told = inspect(blurred + at);
        ASSERT_THAT(told.out, HasSubstr("in focus with: --focus-at " + at + " or --focus "));
        EXPECT_GT(numberAfter(told.out, "blur radius: "), 0.5);
        const std::string value = std::to_string(numberAfter(told.out, "or --focus "));
        for (const std::string& option : {"--focus-at " + at, "--focus " + value}) {
            const ToolRun done = run("render", rendered + option);
            ASSERT_EQ(done.exitCode, 0) << done.err;
            const std::vector<float> result = readValues<float>(path("out.exr"));
            const auto pixel = static_cast<std::size_t>(20 * kWidth + x);
            EXPECT_NEAR(result[3 * pixel], sharp[3 * pixel], 0.01F) << option;
            EXPECT_NEAR(result[3 * pixel + 3], sharp[3 * pixel + 3], 0.01F) << option;
        }
    }
}

TEST_F(Inspect, RefusesWhatItCannotDo) {
    struct Case {
        std::string words;
        std::string said;
    };
    const Case cases[] = {
        {"in.exr", "-o is required"},
        {"in.exr --at 5,5", "--at needs a depth map"},
        {std::string(kBlur) + "--at 96,5", "--at 96,5 is outside the image, which has 96x40"},
        {std::string(kBlur) + "--at here", "--at takes X,Y"},
        {"in.exr -o in.exr", "is an input"},
        {"missing.exr -o out.png", "missing.exr"},
        {"missing.exr -o out", "missing.exr"},
        {"in.exr -o z.exr --depth-map-layer z.exr", "is an input"},
        {"in.exr --depth-map-layer z.exr --focus 3 --focal-distance 1 -o out.png",
         "--focal-distance"}};
    for (const Case& each : cases) {
        const ToolRun done = inspect(each.words);
        EXPECT_NE(done.exitCode, 0) << each.words;
        EXPECT_THAT(done.err, HasSubstr(each.said));
    }
    EXPECT_THAT(names(), ElementsAre("in.exr", "z.exr"));
}

}  // namespace
}  // namespace test
