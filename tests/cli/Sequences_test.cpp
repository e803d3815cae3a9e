// SPDX-License-Identifier: Apache-2.0
// Several frames by one command: small pictures of a card that moves, with its depth.
#include <gmock/gmock.h>

#include <regex>
#include <sstream>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 64;
constexpr int kHeight = 48;

bool isCard(int frame, int x, int y) {
    return x >= 10 + frame && x < 30 + frame && y >= 12 && y < 36;
}

class Sequences : public FolderTest {
protected:
    void SetUp() override {
        for (int frame = 1; frame <= 6; ++frame) writeFrame(frame);
    }
    static std::string number(int frame) { return "000" + std::to_string(frame); }

    // In frame N the wall is at 10 + N metres.
    void writeFrame(int frame) const {
        std::vector<float> light;
        std::vector<float> depth;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const bool card = isCard(frame, i % kWidth, i / kWidth);
            light.push_back(card ? 0.9F : (i % 3 == 0 ? 0.1F : 0.5F));
            depth.push_back(card ? 2.0F : 10.0F + static_cast<float>(frame));
        }
        const auto type = OIIO::TypeDesc::FLOAT;
        writeValues(path("in." + number(frame) + ".exr"), imageSpec(kWidth, kHeight, {"Y"}, type),
                    light);
        writeValues(path("z." + number(frame) + ".exr"), imageSpec(kWidth, kHeight, {"Z"}, type),
                    depth);
    }
    // `orbel render` with these words; those that end as pictures do are in the folder.
    ToolRun run(const std::string& words, bool interrupt = false) const {
        std::vector<std::string> all = {"render", "--exposure", "0", "--blur-radius", "6"};
        std::istringstream stream(words);
        for (std::string word; stream >> word;) {
            const bool file = word.ends_with(".exr") || word.ends_with(".png");
            all.push_back(file ? path(word) : word);
        }
        return runTool(all, interrupt);
    }
    std::string done(const std::string& words) const {
        const ToolRun result = run(words);
        EXPECT_EQ(result.exitCode, 0) << words << ": " << result.err;
        return result.out + result.err;
    }
    std::vector<float> values(const std::string& name) const {
        return readValues<float>(path(name));
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    std::vector<int> outputs() const {
        std::vector<int> frames;
        for (int frame = 1; frame <= 9; ++frame) {
            if (exists("out." + number(frame) + ".exr")) frames.push_back(frame);
        }
        return frames;
    }
    void expectSame(const std::string& a, const std::string& b) const {
        EXPECT_EQ(values(a), values(b)) << a << " and " << b;
    }

    const std::string withDepth = " --resolution 5 --depth-map-layer z.####.exr ";
};

TEST_F(Sequences, EachFrameIsWhatItWouldBeAlone) {
    const std::string said = done("in.####.exr -o out.%04d.exr --depth-near 2 --depth-far 20" +
                                  withDepth + "--frames 1-6x2,6 --jobs 3");
    EXPECT_THAT(outputs(), ElementsAre(1, 3, 5, 6));
    EXPECT_THAT(said, HasSubstr("4 frames rendered, in "));
    for (const int frame : {1, 3, 5, 6}) {
        const std::string name = number(frame);
        std::string words = "in.N.exr -o alone.exr --depth-near 2 --depth-far 20 --resolution 5";
        words += " --depth-map-layer z.N.exr";
        done(std::regex_replace(words, std::regex("N"), name));
        expectSame("alone.exr", "out." + name + ".exr");
        EXPECT_THAT(said, HasSubstr(path("out." + name + ".exr") + "\n"));
    }
    // One picture for all frames, and one frame to a name without a number.
    done("in.0002.exr -o still.#.exr --frames 8,9");
    expectSame("still.8.exr", "still.9.exr");
    done("in.####.exr -o one.exr --frames 2");
}

// The range of all maps, or that of one's own: the wall's blur is another.
TEST_F(Sequences, WhatIsFoundInTheMapsHoldsForTheShot) {
    const std::string words =
        "in.####.exr -o out.####.exr --depth-auto --frames 2-3 --focus-at 20,20" + withDepth;
    EXPECT_THAT(done(words), HasSubstr("depth: 2 (near) to 16 (far)"));
    done(
        "in.0003.exr -o alone.exr --depth-near 2 --depth-far 16 --focus 2 --resolution 5 "
        "--depth-map-layer z.0003.exr");
    expectSame("alone.exr", "out.0003.exr");
    EXPECT_THAT(done(words + "--survey 4"), HasSubstr("depth: 2 (near) to 14 (far)"));
    done(words + "--survey each");
    done(
        "in.0003.exr -o alone.exr --depth-auto --focus-at 20,20 --resolution 5 "
        "--depth-map-layer z.0003.exr");
    expectSame("alone.exr", "out.0003.exr");
    // A map that alone would be read as normalised is one of distances.
    writeValues(path("z.0002.exr"), imageSpec(kWidth, kHeight, {"Z"}, OIIO::TypeDesc::FLOAT),
                std::vector<float>(kWidth * kHeight, 0.5F));
    EXPECT_THAT(done("in.####.exr -o out.####.exr" + withDepth),
                HasSubstr("z.####.exr: distance, 0.5 to 16"));
    EXPECT_THAT(done("in.####.exr -o out.####.exr --occlusion auto" + withDepth),
                HasSubstr("occlusion: 2 slabs in all frames, cut at "));
}

// Controls have keys over the frames, and each picture's metadata says how it was made.
TEST_F(Sequences, KeysMoveAndEachFrameCanBeMadeAgain) {
    const std::string map = " --resolution 5 --depth-map-layer z.0002.exr ";
    done("in.0002.exr -o key.#.exr --frames 1-3 --focal-distance 1:0,3:1" + map);
    done("in.0002.exr -o half.exr --focal-distance 0.5" + map);
    expectSame("key.2.exr", "half.exr");
    EXPECT_NE(values("key.1.exr"), values("key.3.exr"));
    done("in.####.exr -o out.####.exr --depth-auto --focus-at 20,20 --occlusion auto" + withDepth);
    for (const int frame : {2, 5}) {
        const std::string name = number(frame) + ".exr";
        done(std::regex_replace(std::string("in.N -o again.exr --preset out.N"), std::regex("N"),
                                name));
        EXPECT_EQ(readText(path("again.exr")), readText(path("out." + name)));
    }
    done("in.####.exr -o all.####.exr --preset out.0002.exr");
    EXPECT_EQ(readText(path("all.0005.exr")), readText(path("out.0005.exr")));
}

TEST_F(Sequences, GapsAreAnErrorOrWhatIsAskedFor) {
    std::filesystem::remove(path("in.0003.exr"));
    std::filesystem::remove(path("z.0004.exr"));
    const std::string words = "in.####.exr -o out.####.exr --frames 1-4 --survey 1" + withDepth;
    const ToolRun refused = run(words);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_THAT(refused.err, HasSubstr("in.####.exr has no file for 3; "));
    EXPECT_THAT(refused.err, HasSubstr("z.####.exr has no file for 4; "));
    EXPECT_THAT(outputs(), ElementsAre());
    done(words + "--missing skip");
    EXPECT_THAT(outputs(), ElementsAre(1, 2));
    done(words + "--missing hold");
    done("in.0002.exr -o held.exr --survey 1 --frames 3" + withDepth);
    expectSame("out.0003.exr", "held.exr");
    done(words + "--missing black");
    EXPECT_THAT(values("out.0003.exr"), Each(0.0F));
    EXPECT_EQ(values("out.0003.exr").size(), values("out.0002.exr").size());
    EXPECT_THAT(values("out.0004.exr"), Each(0.0F));
}

TEST_F(Sequences, ABrokenFrameEndsTheShotOrIsNamedAtItsEnd) {
    writeText(path("in.0003.exr"), "no picture");
    const ToolRun ended = run("in.####.exr -o out.####.exr --jobs 1");
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_THAT(ended.err, HasSubstr("orbel: frame 3: "));
    EXPECT_THAT(outputs(), ElementsAre(1, 2));
    const ToolRun whole = run("in.####.exr -o out.####.exr --skip-existing --keep-going");
    EXPECT_EQ(whole.exitCode, 1);
    EXPECT_THAT(whole.err, HasSubstr("orbel: 1 frame failed: 3\n"));
    EXPECT_THAT(whole.out, HasSubstr("1  is there  "));
    EXPECT_THAT(outputs(), ElementsAre(1, 2, 4, 5, 6));
    // What all frames have in common is said once.
    EXPECT_THAT(done("in.####.exr -o out.####.png --frames 1,2 --output-type uint8"),
                Not(HasSubstr("warning")));
}

TEST_F(Sequences, ControlCLeavesWholeFramesAndTheRestFollows) {
    done("in.####.exr -o whole.####.exr");
    const ToolRun interrupted = run("in.####.exr -o out.####.exr --jobs 1", true);
    EXPECT_EQ(interrupted.exitCode, 130);
    EXPECT_THAT(interrupted.err, HasSubstr("cancelled"));
    EXPECT_LT(outputs().size(), 6U);
    done("in.####.exr -o out.####.exr --skip-existing");
    for (int frame = 1; frame <= 6; ++frame) {
        expectSame("out." + number(frame) + ".exr", "whole." + number(frame) + ".exr");
    }
    EXPECT_EQ(names().size(), 24U) << "and nothing unfinished";
}

TEST_F(Sequences, WhatCannotBeIsRefused) {
    const std::vector<std::tuple<std::string, int, std::string>> cases = {
        {"none.####.exr -o out.####.exr", 1, "there are no files "},
        {"in.####.exr -o out.exr", 2, "would be written 6 times; put #### where"},
        {"in.##.##.exr -o out.####.exr", 2, "two places for the number"},
        {"in.####.exr -o in.####.exr", 2, "is an input and can't be the output"},
        {"in.0001.exr -o out.####.exr --frames 2-1", 2, "ends before it begins"},
        {"in.0001.exr -o out.####.exr --frames 1-12345678901", 2, "at most nine digits"},
        {"in.0001.exr -o out.exr --skip-existing", 2, "are for several frames"},
        {"in.####.exr -o out.####.exr --missing keep", 2, "--missing takes error, skip, hold"},
        {"in.####.exr -o out.####.exr --jobs 0", 2, "--jobs takes"},
        {"in.####.exr -o out.####.exr --survey all", 2, "--survey takes shot, each or the number"},
        {"in.####.exr -o out.####.exr --survey 7" + withDepth, 1,
         "frame 7 of --survey isn't there"},
        {"in.####.exr -o -", 2, "stands for one picture"},
        {"- -o out.####.exr --frames 1-2", 2, "stands for one picture"},
    };
    for (const auto& [words, code, refusal] : cases) {
        const ToolRun refused = run(words);
        EXPECT_EQ(refused.exitCode, code) << words;
        EXPECT_THAT(refused.err, HasSubstr(refusal)) << words;
        EXPECT_EQ(std::count(refused.err.begin(), refused.err.end(), '\n'), 1) << refused.err;
    }
    EXPECT_THAT(outputs(), ElementsAre());
}

}  // namespace
}  // namespace test
