// SPDX-License-Identifier: Apache-2.0
#include "trial/Compare.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>

#include "support/TestFolder.h"
#include "trial/FrameFile.h"

namespace trial {
namespace {

namespace fs = std::filesystem;

// Two pixels with these values, alpha first.
template <class Channel>
Frame frameOf(const std::array<Channel, 8>& values) {
    Frame frame{2, 1, static_cast<int>(sizeof(Channel)) * 8, {}};
    frame.pixels.resize(sizeof values);
    std::memcpy(frame.pixels.data(), values.data(), sizeof values);
    return frame;
}

class Compare : public testing::Test {
protected:
    Compare() {
        fs::create_directories(a);
        fs::create_directories(b);
    }

    bool compare() {
        std::ostringstream out;
        const bool good = compareFolders(a, b, out);
        text = out.str();
        return good;
    }
    template <class Channel>
    bool compare(const std::array<Channel, 8>& first, const std::array<Channel, 8>& second) {
        writeFrame(frameOf(first), a / "pair.frame");
        writeFrame(frameOf(second), b / "pair.frame");
        return compare();
    }
    bool mentions(const char* part) const { return text.find(part) != std::string::npos; }

    const TestFolder folder;
    const fs::path a = folder.path / "a";
    const fs::path b = folder.path / "b";
    std::string text;
};

TEST_F(Compare, IntegersMayDifferByOneStep) {
    using Bytes = std::array<std::uint8_t, 8>;
    // 10 and 13 are line breaks, which a file in text mode wouldn't preserve.
    const Bytes values{255, 10, 13, 26, 128, 7, 0, 255};
    EXPECT_TRUE(compare(values, values));
    EXPECT_TRUE(mentions("0.0000 % of 8 values differ")) << text;
    EXPECT_TRUE(compare(values, Bytes{255, 11, 13, 26, 127, 7, 0, 255}));
    EXPECT_TRUE(mentions("25.0000 % of 8 values differ")) << text;
    EXPECT_FALSE(compare(values, Bytes{255, 10, 13, 26, 128, 7, 2, 255}));
    EXPECT_TRUE(mentions("pair.frame, pixel 1,0: green is 0 and 2")) << text;

    using Words = std::array<std::uint16_t, 8>;
    const Words steps{32768, 300, 300, 300, 32768, 300, 300, 300};
    EXPECT_TRUE(compare(steps, Words{32767, 299, 301, 300, 32768, 300, 300, 300}));
    EXPECT_FALSE(compare(steps, Words{32768, 300, 300, 300, 32768, 300, 300, 556}));
}

TEST_F(Compare, FloatsMayDifferByAMillionthAndATenMillionth) {
    using Floats = std::array<float, 8>;
    const Floats values{1, 8, 0.5F, 0, 1, 1, 1, 1};
    EXPECT_TRUE(compare(values, Floats{1, 8 * (1 + 0.9e-6F), 0.5F, 0.9e-7F, 1, 1, 1, 1}));
    EXPECT_FALSE(compare(values, Floats{1, 8 * (1 + 1.2e-6F), 0.5F, 0, 1, 1, 1, 1}));
    EXPECT_FALSE(compare(values, Floats{1, 8, 0.5F, -1.2e-7F, 1, 1, 1, 1}));
    EXPECT_FALSE(compare(values, Floats{1, 8, 0.5F, NAN, 1, 1, 1, 1}));
    EXPECT_FALSE(compare(values, Floats{1, INFINITY, 0.5F, 0, 1, 1, 1, 1}));
}

TEST_F(Compare, WithoutAlphaColoursDoNotCount) {
    using Bytes = std::array<std::uint8_t, 8>;
    EXPECT_TRUE(compare(Bytes{0, 9, 9, 9, 255, 1, 1, 1}, Bytes{0, 90, 9, 9, 255, 1, 1, 1}));
    EXPECT_TRUE(mentions("1 transparent pixels")) << text;
    EXPECT_FALSE(compare(Bytes{1, 9, 9, 9, 255, 1, 1, 1}, Bytes{0, 90, 9, 9, 255, 1, 1, 1}));
    using Floats = std::array<float, 8>;
    EXPECT_TRUE(compare(Floats{1e-9F, 9, 9, 9, 1, 1, 1, 1}, Floats{2e-9F, 1, 9, 9, 1, 1, 1, 1}));
    EXPECT_FALSE(compare(Floats{1e-9F, 9, 9, 9, 1, 1, 1, 1}, Floats{1e-2F, 9, 9, 9, 1, 1, 1, 1}));
}

TEST_F(Compare, EveryFrameNeedsItsCounterpart) {
    EXPECT_FALSE(compare()) << "no frames";
    const Frame frame = frameOf(std::array<std::uint8_t, 8>{255, 1, 2, 3, 255, 1, 2, 3});
    writeFrame(frame, a / "both.frame");
    writeFrame(frame, b / "both.frame");
    EXPECT_TRUE(compare());
    for (const fs::path& side : {a, b}) {
        writeFrame(frame, side / "single.frame");
        EXPECT_FALSE(compare());
        EXPECT_TRUE(mentions("single.frame")) << text;
        fs::remove(side / "single.frame");
    }
    for (const std::uintmax_t length : {0, 20, 22}) {
        fs::resize_file(b / "both.frame", length);
        EXPECT_FALSE(compare()) << length;
        EXPECT_TRUE(mentions("both.frame")) << text;
    }
    writeFrame({1, 2, 8, frame.pixels}, b / "both.frame");
    EXPECT_FALSE(compare()) << "another size";
}

}  // namespace
}  // namespace trial
