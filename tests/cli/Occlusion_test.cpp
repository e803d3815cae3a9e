// SPDX-License-Identifier: Apache-2.0
// --occlusion on the command line: a bar in front of stripes.
#include <gmock/gmock.h>

#include <cmath>
#include <sstream>
#include <utility>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::AllOf;
using testing::Each;
using testing::FloatNear;
using testing::HasSubstr;
using Pixels = std::vector<float>;
using Cases = std::vector<std::pair<std::string, std::string>>;

constexpr int kWidth = 96;
constexpr int kHeight = 48;
constexpr int kLeft = 40;  // of the bar
constexpr int kRight = 56;

bool isBar(int x) {
    return x >= kLeft && x < kRight;
}
float nearness(int x) {
    return isBar(x) ? 0.75F : 0.25F;
}
// Red stripes, one pixel wide, behind a blue bar.
Pixels colourAt(int x) {
    return {isBar(x) || x % 2 != 0 ? 0.0F : 1.0F, 0.0F, isBar(x) ? 1.0F : 0.0F};
}

class Occlusion : public FolderTest {
protected:
    void SetUp() override {
        write("in.exr", {"R", "G", "B"}, colourAt);
        write("map.exr", {"Y"}, [](int x) { return Pixels{nearness(x)}; });
        write("z.exr", {"Z"}, [](int x) { return Pixels{1 / nearness(x)}; });
    }
    template <class Column>
    void write(const std::string& name, const std::vector<std::string>& channels, Column column,
               int width = kWidth) const {
        Pixels values;
        for (int i = 0; i < width * kHeight; ++i) {
            const Pixels here = column(i % width);
            values.insert(values.end(), here.begin(), here.end());
        }
        writeValues(path(name), imageSpec(width, kHeight, channels, OIIO::TypeDesc::FLOAT), values);
    }
    // Words that end with .exr are files in the folder.
    ToolRun run(const std::string& words) const {
        std::vector<std::string> all = {"render",        "--raw", "--exposure",  "0",
                                        "--blur-radius", "8",     "--roundness", "1"};
        std::istringstream stream("-o out.exr " + words);
        for (std::string word; stream >> word;) {
            if (word.ends_with(".exr")) word = path(word);
            all.push_back(word == "''" ? "" : word);
        }
        return runTool(all);
    }
    Pixels render(const std::string& words) {
        std::filesystem::remove(path("out.exr"));
        const ToolRun done = run(words);
        EXPECT_EQ(done.exitCode, 0) << done.err;
        said = done.err;
        return readValues<float>(path("out.exr"), &found);
    }
    Pixels stripes(const std::string& words, const std::string& map = "map.exr") {
        return render("in.exr --depth-map-layer " + map + " " + words);
    }
    static void expectSame(const Pixels& found, const Pixels& expected) {
        EXPECT_THAT(found, testing::Pointwise(FloatNear(1e-5F), expected));
    }
    // Pixels of a row of the last result.
    Pixels row(const Pixels& values, int x, int y, int count) const {
        const int first = (y - found.y) * found.width + x - found.x;
        const auto begin = values.begin() + first * found.nchannels;
        return {begin, begin + count * found.nchannels};
    }

    OIIO::ImageSpec found;  // of the last result
    std::string said;
};

TEST_F(Occlusion, TheBarSpreadsOverABackgroundThatStaysSharp) {
    const auto steepest = [](const Pixels& values) {
        float step = 0.0F;
        for (std::size_t x = 0; x < kLeft + 8; ++x) {
            step = std::max(step, std::fabs(values[3 * x + 5] - values[3 * x + 2]));
        }
        return step;
    };
    const Pixels values = stripes("--focus 0.25 --occlusion");
    EXPECT_LT(steepest(values), 0.15F);
    EXPECT_GT(steepest(stripes("--focus 0.25 --resolution 16 --composite-mode normal")), 0.4F);
    EXPECT_GT(steepest(stripes("--focus 0.25 --resolution 16 --composite-mode split")), 0.4F);
    for (std::size_t x = 0; x < kLeft + 6; ++x) {
        if (x == kLeft - 1 || x == kLeft) continue;  // they may show both surfaces
        const float through = 1.0F - values[3 * x + 2];
        const bool seen = x < kLeft;
        const float behind = seen ? colourAt(static_cast<int>(x))[0] : 0.5F;
        EXPECT_NEAR(values[3 * x], through * behind, seen ? 0.01F : 0.4F * through) << x;
    }
    // A picture of one colour keeps it, whatever is in front of what.
    write("even.exr", {"R", "G", "B"}, [](int) { return Pixels(3, 0.5F); });
    for (const char* focus : {"0.25", "0.5", "0.75"}) {
        EXPECT_THAT(
            render("even.exr --depth-map-layer map.exr --occlusion --focus " + std::string(focus)),
            Each(FloatNear(0.5F, 1e-5F)));
    }
}

TEST_F(Occlusion, SlabsAreSaidInTheMapsValuesAndTheValueMayBeLeftOut) {
    const Pixels expected = stripes("--occlusion auto", "z.exr");
    EXPECT_THAT(said, HasSubstr("2 slabs, cut at 2.0; blur radii in pixels, from far to near: "));
    for (const char* words :
         {"--occlusion in.exr", "--occlusion -- in.exr", "in.exr --occlusion --quiet",
          "in.exr --occlusion", "in.exr --occlusion 8", "in.exr --occlusion 2."}) {
        expectSame(render("--depth-map-layer z.exr " + std::string(words)), expected);
    }
    for (const char* bounds : {"2,3.5", "3.5,2"}) {
        expectSame(stripes("--occlusion " + std::string(bounds), "z.exr"), expected);
        EXPECT_THAT(said, HasSubstr("3 slabs, cut at 3.5,2;"));
    }
    // A bound between what is farthest and what has no depth.
    write("sky.exr", {"Z"}, [](int x) { return Pixels{x < 20 ? INFINITY : 1 / nearness(x)}; });
    stripes("--occlusion 2,8 --depth-near 1 --depth-far inf --depth-inverse", "sky.exr");
    EXPECT_THAT(said, HasSubstr("3 slabs, cut at 8,2;"));
    write("slope.exr", {"Y"}, [](int x) { return Pixels{static_cast<float>(x) / 128}; });
    const Pixels plain = stripes("--composite-mode split", "slope.exr");
    EXPECT_EQ(stripes("--occlusion", "slope.exr"), plain);
    EXPECT_THAT(said, HasSubstr("occlusion: one slab, since nothing hides anything"));
}

TEST_F(Occlusion, NearIsNearInEveryKindOfMap) {
    write("complement.exr", {"Y"}, [](int x) { return Pixels{1 - nearness(x)}; });
    write("disparity.exr", {"disparity"}, [](int x) { return Pixels{40 * nearness(x)}; });
    expectSame(stripes("--occlusion --focus 0.75 --invert-depth-map on", "complement.exr"),
               stripes("--occlusion --focus 0.25"));
    const Pixels expected = stripes("--occlusion --focus 4", "z.exr");
    expectSame(stripes("--occlusion --focus 10", "disparity.exr"), expected);
    expectSame(stripes("--occlusion --focus 4 --invert-depth-map on", "z.exr"), expected);
    expectSame(stripes("--occlusion --focal-distance 1 --invert-depth-map on", "z.exr"), expected);
}

TEST_F(Occlusion, PartsPreviewsOverscanAndAlphaAreThoseOfTheWhole) {
    const auto written = [&](const std::string& name, bool straight) {
        write(name, {"R", "G", "B", "A"}, [=](int x) {
            const float alpha = x < 20 ? 0.0F : x < 28 ? 0.5F : 1.0F;
            const float factor = straight ? 1.0F : alpha;
            return Pixels{factor * colourAt(x)[0], factor / 4, factor * colourAt(x)[2], alpha};
        });
        return name + " --depth-map-layer map.exr --focus 0.25 --occlusion ";
    };
    const std::string associated = written("associated.exr", false);
    const Pixels whole = render(associated);
    EXPECT_THAT(whole, Each(AllOf(testing::Ge(-1e-5F), testing::Le(1.00001F))));
    expectSame(row(whole, 0, 10, 30), row(readValues<float>(path("associated.exr")), 0, 10, 30));
    const Pixels expected = row(whole, 30, 10, 20);
    expectSame(render(written("straight.exr", true) + "--alpha straight"), whole);
    const Pixels region = render(associated + "--region 30,10,20,16");
    ASSERT_EQ(region.size(), std::size_t{4} * 20 * 16);
    expectSame(row(region, 30, 10, 20), expected);
    const Pixels half = render(associated + "--downsample 1/2");
    ASSERT_EQ(half.size() * 4, whole.size());
    for (std::size_t x = 0; x < kWidth / 2; ++x) {
        EXPECT_NEAR(half[4 * x + 2], (whole[8 * x + 2] + whole[8 * x + 6]) / 2, 0.06) << x;
    }
    const Pixels edgeless = row(render(associated + "--edge-behavior off"), 0, 2, kWidth);
    const Pixels grown = render(associated + "--edge-behavior off --keep-overscan");
    EXPECT_LT(found.y, -5);
    expectSame(row(grown, 0, 2, kWidth), edgeless);
}

TEST_F(Occlusion, TakesMapsOfAnotherSizeAndWithHoles) {
    const auto bar = [](int x) { return Pixels{isBar(x) ? 0.75F : 0.0F}; };
    write("zero.exr", {"Y"}, bar);
    write(
        "narrow.exr", {"Y"}, [&](int x) { return bar(x + kLeft - 2); }, kRight - kLeft + 4);
    const Pixels expected = stripes("--occlusion", "zero.exr");
    expectSame(stripes("--occlusion --placement center-map", "narrow.exr"), expected);
    write("torn.exr", {"Z"}, [](int x) {
        const float holes[] = {NAN, INFINITY, 0.0F, -1.0F, 1 / nearness(x)};
        return Pixels{holes[x % 5]};
    });
    for (const char* slabs : {"auto", "4", "2."}) {
        EXPECT_THAT(stripes("--occlusion " + std::string(slabs), "torn.exr"),
                    Each(AllOf(testing::Ge(-0.001F), testing::Le(1.001F))));
    }
}

TEST_F(Occlusion, WhatCannotBeIsRefused) {
    const std::string form = "takes auto, a number of slabs from 2 to 8, or values of the map";
    for (const auto& [words, refusal] :
         Cases{{"1", form},
               {"9", form},
               {"-3", form},
               {"two", form},
               {"''", form},
               {"2.5e", "takes a number, not \"2.5e\""},
               {"5,near", "takes a number, not \"near\""},
               {"0.5,", "takes a number, not \"\""},
               {".3,.35,.4,.45,.5,.55,.6,.65", "takes at most 7 bounds, not 8"},
               {"0.3,0.6,0.5", "must be in order, each once, not \"0.3,0.6,0.5\""},
               {"0.5,0.5", "must be in order"},
               {"0.9", "must lie inside the map's values, 0.25 to 0.75"},
               {"0.25,0.6", "must lie inside the map's values, 0.25 to 0.75"},
               {"0.5,1.5", "must lie inside the map's values, 0.25 to 0.75"},
               {"0.5,0.500000001", "not too close to each other"},
               {"auto --bits 8", "renders in float; leave out --bits"},
               {"auto --use-focus-point on", "not as --use-focus-point"},
               {"other.exr", "unexpected argument " + path("other.exr")}}) {
        const ToolRun refused = run("in.exr --depth-map-layer map.exr --occlusion " + words);
        EXPECT_EQ(refused.exitCode, 2);
        EXPECT_THAT(refused.err, HasSubstr(refusal));
    }
    EXPECT_THAT(run("in.exr --occlusion").err, HasSubstr("--occlusion needs a depth map; add"));
}

}  // namespace
}  // namespace test
