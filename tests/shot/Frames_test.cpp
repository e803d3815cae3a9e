// SPDX-License-Identifier: Apache-2.0
#include "shot/Frames.h"

#include <gmock/gmock.h>

#include <fstream>
#include <stdexcept>

#include "support/TestFolder.h"

namespace test {
namespace {

using shot::FilePattern;
using shot::framesText;
using shot::parseFrames;
using testing::ElementsAre;

TEST(Frames, AreReadAndWrittenAsPeopleDo) {
    EXPECT_THAT(parseFrames("1001-1003"), ElementsAre(1001, 1002, 1003));
    EXPECT_THAT(parseFrames("10-15x2,3,10"), ElementsAre(3, 10, 12, 14));
    EXPECT_THAT(parseFrames("-3--1,-10"), ElementsAre(-10, -3, -2, -1));
    EXPECT_EQ(framesText({-2, -1, 0, 5, 7, 8}), "-2-0, 5, 7-8");
    for (const char* text : {"", "a", "1-", "1-2-3", "1,", "1-5x0", "5-3", "1234567890", "1 - 2",
                             "1-999999999", "-999999999-999999999"}) {
        EXPECT_THROW(parseFrames(text), std::invalid_argument) << text;
    }
    EXPECT_EQ(parseFrames("-999999999-999999999x100000000").size(), 20U);
}

TEST(FilePattern, NamesEachFrame) {
    EXPECT_EQ(FilePattern("a.####.exr").name(7), "a.0007.exr");
    EXPECT_EQ(FilePattern("a.%04d.exr").name(12345), "a.12345.exr");
    EXPECT_EQ(FilePattern("a.%04d.exr:Z").name(-7), "a.-007.exr:Z");
    EXPECT_EQ(FilePattern("%d/a.exr").name(0), "0/a.exr");
    EXPECT_EQ(FilePattern("a#.exr").name(12), "a12.exr");
    EXPECT_FALSE(FilePattern("50%.exr").hasNumber());
    EXPECT_EQ(FilePattern::literal("a#.exr").name(12), "a#.exr");
    EXPECT_THROW(FilePattern("a#.##.exr"), std::invalid_argument);
    EXPECT_THROW(FilePattern("a%d.####.exr"), std::invalid_argument);
}

TEST(FilePattern, FindsTheFramesOfItsFilesOnly) {
    const TestFolder folder;
    const auto in = [&](const char* name) { return (folder.path / name).string(); };
    for (const char* name : {"a.0009.exr", "a.0010.exr", "a.-010.exr", "a.12345.exr", "a.11.exr",
                             "a.00012.exr", "a.0013.png", "a..exr", "b.0014.exr", "a.0015.exr~"}) {
        std::ofstream(in(name)) << name;
    }
    EXPECT_THAT(FilePattern(in("a.####.exr")).framesOnDisk(), ElementsAre(-10, 9, 10, 12345));
    EXPECT_THAT(FilePattern(in("a.%04d.exr:layer.Z")).framesOnDisk(),
                ElementsAre(-10, 9, 10, 12345));
    EXPECT_THAT(FilePattern(in("c.####.exr")).framesOnDisk(), ElementsAre());
    EXPECT_THAT(FilePattern(in("none/a.####.exr")).framesOnDisk(), ElementsAre());
}

}  // namespace
}  // namespace test
