// SPDX-License-Identifier: Apache-2.0
// Depth maps on the command line: what is in focus, what is said, what is refused.
#include <gmock/gmock.h>

#include <cmath>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 96;
constexpr int kHeight = 36;
constexpr int kThird = kWidth / 3;

class DepthOptions : public FolderTest {
protected:
    // A fine pattern that any blur changes, and the distances 2, 5 and 20 from left to right.
    void SetUp() override {
        std::vector<float> colours;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const float light = (i + i / kWidth) % 2 == 0 ? 1.0F : 0.0F;
            colours.insert(colours.end(), {light, light / 2, 0.25F});
        }
        writeValues(path("in.exr"), spec({"R", "G", "B"}), colours);
        writeMap("z.exr", "Z", [](float distance) { return distance; });
    }
    static OIIO::ImageSpec spec(const std::vector<std::string>& channels) {
        return imageSpec(kWidth, kHeight, channels, TypeDesc::FLOAT);
    }
    template <class Value>
    void writeMap(const std::string& name, const std::string& channel, Value value) const {
        constexpr float kDistances[] = {2, 5, 20};
        std::vector<float> map;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            map.push_back(value(kDistances[i % kWidth / kThird]));
        }
        writeValues(path(name), spec({channel}), map);
    }
    ToolRun render(const std::string& map, std::vector<std::string> options) const {
        options.insert(options.begin(), {"render", path("in.exr"), "-o", path("out.exr"),
                                         "--exposure", "0", "--blur-radius", "5", "--resolution",
                                         "16", "--depth-map-layer", path(map)});
        return runTool(options);
    }
    // The mean difference of the result from the input in the middle of each third.
    std::vector<double> blur() const {
        const auto in = readValues<float>(path("in.exr"));
        const auto out = readValues<float>(path("out.exr"));
        std::vector<double> means(3, 0.0);
        EXPECT_EQ(out.size(), in.size());
        if (out.size() != in.size()) return means;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const int column = i % kThird;
            const int row = i / kWidth;
            if (column < 10 || column >= kThird - 10 || row < 10 || row >= kHeight - 10) continue;
            const auto red = static_cast<std::size_t>(3 * i);
            means[static_cast<std::size_t>(i % kWidth / kThird)] +=
                std::fabs(static_cast<double>(in[red]) - out[red]) / (12 * 16);
        }
        return means;
    }
    void expectSharpOnly(std::size_t third) const {
        const std::vector<double> means = blur();
        for (std::size_t i = 0; i < means.size(); ++i) {
            EXPECT_EQ(means[i] < 1e-4, i == third) << "third " << i << ": " << means[i];
            EXPECT_EQ(means[i] > 0.01, i != third) << "third " << i << ": " << means[i];
        }
    }
    void expectSame(const std::string& map, const std::vector<std::string>& options,
                    const std::string& otherMap, const std::vector<std::string>& otherOptions) {
        EXPECT_EQ(render(otherMap, otherOptions).exitCode, 0);
        const auto expected = readValues<float>(path("out.exr"));
        const ToolRun run = render(map, options);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        EXPECT_EQ(readValues<float>(path("out.exr")), expected) << map;
    }
    void expectRefusal(const ToolRun& run, const std::string& words) const {
        EXPECT_EQ(run.exitCode, 2);
        EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
        EXPECT_THAT(run.err, HasSubstr(words));
    }
};

TEST_F(DepthOptions, TheFocusedDistanceIsSharpInEveryKindOfMap) {
    writeMap("disparity.exr", "disparity", [](float distance) { return 40 / distance; });
    writeMap("near.exr", "Y", [](float distance) { return 1 - distance / 25; });
    writeMap("far.exr", "Y", [](float distance) { return distance / 25; });
    struct Case {
        std::string map;
        std::vector<std::string> focus;  // on the left, middle and right third
        std::vector<std::string> options;
    };
    const std::vector<std::string> linear = {"--depth-near", "1", "--depth-far", "25"};
    const Case cases[] = {
        {"z.exr", {"2", "5", "20"}, {}},
        {"z.exr", {"2", "5", "20"}, {"--depth-auto"}},
        {"z.exr", {"2", "5", "20"}, {"--depth-inverse", "--invert-depth-map", "on"}},
        {"z.exr", {"2", "5", "20"}, linear},
        {"disparity.exr", {"20", "8", "2"}, {}},
        {"near.exr", {"0.92", "0.8", "0.2"}, {}},
        {"far.exr", {"0.08", "0.2", "0.8"}, {"--invert-depth-map", "on"}}};
    for (const auto& [map, focus, options] : cases) {
        for (std::size_t third = 0; third < 3; ++third) {
            const bool pointed = third == 1;
            const std::string place = pointed ? "48,18" : focus[third];
            SCOPED_TRACE(testing::Message() << map << " " << place);
            std::vector<std::string> all = options;
            all.insert(all.end(), {pointed ? "--focus-at" : "--focus", place});
            const ToolRun run = render(map, all);
            const std::string said = place + (pointed ? " (" + focus[third] + ")" : "");
            EXPECT_THAT(run.err, AllOf(HasSubstr("focus at " + said + ": Focal Distance"),
                                       Not(HasSubstr("warning"))));
            expectSharpOnly(third);
        }
    }
    EXPECT_THAT(render("z.exr", {"--focus", "5"}).err,
                HasSubstr("focus at 5: Focal Distance 0.333333\n"));
    EXPECT_THAT(render("z.exr", {"--focus-at", "50%,100%"}).err,
                HasSubstr("focus at 50%,100% (5): Focal Distance 0.333333\n"));
    EXPECT_THAT(render("z.exr", {"--focus", "40"}).err,
                HasSubstr("warning: focus at 40: Focal Distance -0.0555556, beyond"));
}

TEST_F(DepthOptions, TheDepthOfARenderersFrameIsUsedAndSaid) {
    std::vector<float> frame;
    const auto distances = readValues<float>(path("z.exr"));
    for (const float distance : distances) {
        frame.insert(frame.end(), {0.1F, 0.9F, 0.5F, 1.0F, distance});
    }
    writeValues(path("frame.exr"), spec({"R", "G", "B", "A", "Z"}), frame);
    expectSame("frame.exr", {"--focus", "5"}, "z.exr", {"--focus", "5"});
    EXPECT_THAT(render("frame.exr", {"--focus", "5"}).err,
                HasSubstr("frame.exr:Z: distance, 2 to 20 (linear in 1/distance)"));
    writeValues(path("colours.exr"), spec({"R", "G", "B"}),
                std::vector<float>(frame.begin(), frame.begin() + 3 * kWidth * kHeight));
    EXPECT_THAT(render("colours.exr", {}).err, HasSubstr("is a colour image"));
}

TEST_F(DepthOptions, DisparitiesAboveOneKeepNearAndFarApart) {
    writeMap("d.exr", "Y", [](float distance) { return 40 / distance; });
    const ToolRun run = render("d.exr", {"--depth-kind", "disparity", "--depth-auto"});
    EXPECT_EQ(run.out, "depth: 20 (near) to 2 (far)\n");
    expectSame("d.exr", {"--depth-kind", "disparity", "--depth-auto", "--focal-distance", "1"},
               "z.exr", {"--depth-auto", "--depth-inverse", "--focal-distance", "1"});
    expectSharpOnly(0);
}

TEST_F(DepthOptions, PixelsWithoutDepthAreFarAndCounted) {
    writeMap("nan.exr", "Z", [](float distance) { return distance > 9 ? NAN : distance; });
    writeMap("zero.exr", "Z", [](float distance) { return distance > 9 ? 0.0F : distance; });
    for (const char* map : {"nan.exr", "zero.exr"}) {
        EXPECT_THAT(render(map, {"--focus-at", "90,9"}).err,
                    AllOf(HasSubstr("2 to 5 (linear in 1/distance), 1152 pixels without depth"),
                          HasSubstr("(far, without depth): Focal Distance 0\n")));
        EXPECT_LT(blur()[2], 1e-4) << map;
        EXPECT_GT(blur()[0], 0.1) << map;
    }
}

TEST_F(DepthOptions, AMapOfAnotherSizeIsStretchedOrAskedAbout) {
    std::vector<float> half;
    for (int i = 0; i < 48 * 18; ++i) half.push_back(i % 48 < 16 ? 2 : i % 48 < 32 ? 5 : 20);
    writeValues(path("half.exr"), imageSpec(48, 18, {"Z"}, TypeDesc::FLOAT), half);
    EXPECT_THAT(render("half.exr", {"--focus-at", "48,18"}).err,
                AllOf(HasSubstr("half.exr, 48x18, is stretched over the image, 96x36"),
                      HasSubstr("(5): Focal Distance 0.333333")));
    expectSharpOnly(1);
    EXPECT_THAT(render("half.exr", {"--placement", "center-map", "--focus-at", "0,0"}).err,
                AllOf(Not(HasSubstr("stretched")), HasSubstr("focus at 0,0 (2)")));
    EXPECT_THAT(render("z.exr", {}).err, Not(HasSubstr("stretched")));
    // What is in focus everywhere in the map is sharp up to the image's edges.
    writeValues(path("flat.exr"), imageSpec(24, 9, {"Y"}, TypeDesc::FLOAT),
                std::vector<float>(24 * 9, 1.0F));
    EXPECT_EQ(render("flat.exr", {"--focus", "1"}).exitCode, 0);
    const auto out = readValues<float>(path("out.exr"));
    EXPECT_THAT(readValues<float>(path("in.exr")),
                testing::Pointwise(testing::FloatNear(1e-4F), out));
    half.resize(48 * 12);
    writeValues(path("wide.exr"), imageSpec(48, 12, {"Z"}, TypeDesc::FLOAT), half);
    expectRefusal(render("wide.exr", {}),
                  "wide.exr has 48x12 pixels and another shape than the "
                  "image, 96x36; add --placement stretch-map or --placement center-map");
    EXPECT_EQ(render("wide.exr", {"--placement", "stretch-map"}).exitCode, 0);
}

TEST_F(DepthOptions, ContradictionsAreRefusedAndParamsKnowsTheOptions) {
    using Case = std::pair<std::vector<std::string>, const char*>;
    const Case cases[] = {
        {{"--focus", "5", "--focal-distance", "1"}, "leave out --focal-distance"},
        {{"--focus-at", "5,5", "--use-focus-point", "ON"}, "--use-focus-point on exclude"},
        {{"--focus", "5", "--focus-at", "5,5"}, "exclude each other"},
        {{"--focus", "0"}, "a distance above 0"},
        {{"--focus", "2", "--depth-kind", "normalised"}, "a value from 0 to 1"},
        {{"--focus", "near"}, "--focus takes a number"},
        {{"--focus-at", "96,0"}, "96x36"},
        {{"--focus-at", "5"}, "X,Y in pixels or X%,Y%"},
        {{"--depth-kind", "depth"}, "distance, disparity or normalised"},
        {{"--depth-kind", "normalised", "--depth-auto"}, "a normalised map is taken as it is"},
        {{"--depth-kind", "distance", "--depth-map-channel", "alpha"}, "alpha is taken as it is"}};
    for (const auto& [options, words] : cases) expectRefusal(render("z.exr", options), words);
    const ToolRun state =
        runTool({"params", "--state", "--depth-map-layer", path("z.exr"), "--depth-kind",
                 "distance", "--focus-at", "500,500", "--depth-auto"});
    EXPECT_EQ(state.exitCode, 0) << state.err;
    EXPECT_EQ(state.err, "");
    EXPECT_THAT(state.out, AllOf(HasSubstr("greyed out"), Not(HasSubstr("near)"))));
}

}  // namespace
}  // namespace test
