// SPDX-License-Identifier: Apache-2.0
// A file read into a world and written again, as with a blur of radius 0.
#include <gmock/gmock.h>

#include <bit>
#include <limits>
#include <sstream>

#include "pictures/WorldPixels.h"
#include "pictures/files/PictureReader.h"
#include "pictures/files/PictureWriter.h"
#include "support/Noise.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

using OIIO::TypeDesc;

class RoundTrip : public test::FolderTest {
protected:
    // Returns the messages.
    std::string copy(const std::string& from, const std::string& to,
                     PF_LRect grown = {0, 0, 0, 0}) const {
        Picture picture = readPicture(path(from));
        repair(picture);
        auto world = makeWorld(picture, worldBits(picture.type));
        if (grown.right > 0) {
            const headless::WorldOptions origin{grown.left, grown.top};
            world = std::make_shared<headless::World>(
                grown.right - grown.left, grown.bottom - grown.top, world->format(), origin);
        }
        std::ostringstream said;
        Messages messages(said, false);
        const PF_LRect rect = world->rect();
        writeResult(path(to),
                    {.source = picture,
                     .result = *world,
                     .data = {rect.left + picture.window.left, rect.top + picture.window.top,
                              rect.right + picture.window.left, rect.bottom + picture.window.top},
                     .display = picture.display,
                     .grown = grown.right > 0},
                    messages);
        return said.str();
    }
};

// Integers over the whole range; with `associated`, colours don't exceed alpha, which is 0, full or
// in between.
template <class Value>
std::vector<Value> somePixels(std::size_t channels, bool associated) {
    constexpr unsigned kTop = std::numeric_limits<Value>::max();
    Noise noise;
    std::vector<Value> values;
    for (unsigned i = 0; i < 64 * 64; ++i) {
        const unsigned kind = i % 4;
        const unsigned alpha = kind == 0 ? 0 : kind == 1 ? kTop : noise.upTo(kTop);
        for (std::size_t c = 1; c < channels; ++c) {
            values.push_back(static_cast<Value>(noise.upTo(associated ? alpha : kTop)));
        }
        values.push_back(static_cast<Value>(alpha));
    }
    return values;
}

// 8 bits are restored exactly, 16 within a step, in the channels and the type of the file.
TEST_F(RoundTrip, IntegersKeepTheirValues) {
    const struct {
        const char* suffix;
        std::vector<std::string> channels;
        bool associated;
    } files[] = {{".png", {"R", "G", "B"}, false},
                 {".png", {"R", "G", "B", "A"}, false},
                 {".png", {"Y"}, false},
                 {".png", {"Y", "A"}, false},
                 {".tif", {"R", "G", "B", "A"}, false},
                 {".tif", {"R", "G", "B", "A"}, true}};
    for (const auto& file : files) {
        const auto check = [&]<class Value>(const TypeDesc& type, Value tolerance) {
            const std::string in = std::string("in") + file.suffix;
            const std::string out = std::string("out") + file.suffix;
            auto made = test::imageSpec(64, 64, file.channels, type);
            if (!file.associated) made.attribute("oiio:UnassociatedAlpha", 1);
            const auto values = somePixels<Value>(file.channels.size(), file.associated);
            test::writeValues(path(in), made, values);
            EXPECT_EQ(copy(in, out), "");
            OIIO::ImageSpec before, found;
            test::readValues<float>(path(in), &before);
            const auto copied = test::readValues<Value>(path(out), &found);
            EXPECT_EQ(found.format, type);
            EXPECT_EQ(found.channelnames, file.channels);
            EXPECT_EQ(found.get_int_attribute("oiio:UnassociatedAlpha"),
                      before.get_int_attribute("oiio:UnassociatedAlpha"));
            ASSERT_EQ(copied.size(), values.size());
            for (std::size_t i = 0; i < values.size(); ++i) {
                ASSERT_NEAR(copied[i], values[i], tolerance) << file.suffix << " value " << i;
            }
            if (file.associated) return;
            copy(out, in);
            EXPECT_EQ(test::readValues<Value>(path(in)), copied) << "drifts further";
        };
        check(TypeDesc::UINT8, std::uint8_t{0});
        check(TypeDesc::UINT16, std::uint16_t{1});
    }
}

// Steps between two floats of one sign.
int stepsApart(float a, float b) {
    return std::abs(std::bit_cast<std::int32_t>(a) - std::bit_cast<std::int32_t>(b));
}

std::vector<float> lightPixels() {
    Noise noise;
    const auto between = [&](double low, double high) {
        return static_cast<float>(low + (high - low) * noise.unit());
    };
    std::vector<float> values;
    for (int i = 0; i < 64 * 64; ++i) {
        for (int c = 0; c < 3; ++c) values.push_back(between(0.0, 40.0));
        values.push_back(i % 3 == 0 ? 0.0F : i % 3 == 1 ? 1.0F : between(1e-4, 1.0));
    }
    return values;
}

// Exact where alpha is 0 or 1; elsewhere within two units in the last place.
TEST_F(RoundTrip, FloatAndHalfAreExact) {
    const auto values = lightPixels();
    const std::vector<std::string> channels{"R", "G", "B", "A"};
    OIIO::ImageSpec found;
    for (const std::string suffix : {".exr", ".tif"}) {
        test::writeValues(path("in" + suffix), test::imageSpec(64, 64, channels, TypeDesc::FLOAT),
                          values);
        copy("in" + suffix, "out" + suffix);
        const auto copied = test::readValues<float>(path("out" + suffix), &found);
        EXPECT_EQ(found.format, TypeDesc::FLOAT);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const bool whole = i / 4 % 3 != 2;
            ASSERT_LE(stepsApart(copied[i], values[i]), whole ? 0 : 2) << suffix << " value " << i;
        }
    }
    test::writeValues(path("half.exr"), test::imageSpec(64, 64, channels, TypeDesc::HALF), values);
    EXPECT_EQ(copy("half.exr", "out.exr"), "");
    EXPECT_EQ(test::readValues<float>(path("half.exr")),
              test::readValues<float>(path("out.exr"), &found));
    EXPECT_EQ(found.format, TypeDesc::HALF);
}

TEST_F(RoundTrip, OtherFormatsTakeTheNearestBitsAndSayIt) {
    const auto colours = test::imageSpec(64, 64, {"R", "G", "B"}, TypeDesc::UINT16);
    test::writeValues(path("in.png"), colours, somePixels<std::uint16_t>(3, false));
    const std::pair<const char*, TypeDesc> cases[] = {
        {"out.exr", TypeDesc::FLOAT}, {"out.ppm", TypeDesc::UINT8}, {"out.jpg", TypeDesc::UINT8}};
    for (const auto& [name, type] : cases) {
        const std::string said = copy("in.png", name);
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        OIIO::ImageSpec found;
        test::readValues<float>(path(name), &found);
        EXPECT_EQ(found.format, type) << name;
        EXPECT_EQ(found.nchannels, 3) << name;
    }
}

TEST_F(RoundTrip, AlphaFollowsTheFormatsConvention) {
    auto straight = test::imageSpec(1, 1, {"R", "G", "B", "A"}, TypeDesc::UINT8);
    straight.attribute("oiio:UnassociatedAlpha", 1);
    test::writeValues<std::uint8_t>(path("in.png"), straight, {200, 100, 50, 51});
    copy("in.png", "out.tga");
    EXPECT_THAT(test::readValues<std::uint8_t>(path("out.tga")),
                testing::ElementsAre(200, 100, 50, 51));
    copy("in.png", "out.exr");
    const auto associated = test::readValues<float>(path("out.exr"));
    EXPECT_NEAR(associated[0], 200.0 / 255.0 * 0.2, 1e-3);
    EXPECT_NEAR(associated[3], 0.2, 1e-3);
    const std::string said = copy("in.png", "out.jpg");  // over black
    EXPECT_NE(said.find("alpha"), std::string::npos) << said;
    EXPECT_NEAR(test::readValues<std::uint8_t>(path("out.jpg"))[0], 40, 3);
}

// Pixels beyond the layer need alpha: in EXR the data window grows, in other formats the image.
TEST_F(RoundTrip, MetadataAndWindowsStayAndOverscanGrowsThem) {
    auto made = test::imageSpec(8, 6, {"R", "G", "B"}, TypeDesc::HALF);
    made.full_x = made.x = 100;
    made.attribute("PixelAspectRatio", 2.0F);
    made.attribute("Copyright", "somebody");
    test::writeValues(path("in.exr"), made, std::vector<float>(8 * 6 * 3, 0.5F));
    const auto expect = [&](const char* name, const Window& data, int fullX, int channels) {
        OIIO::ImageSpec found;
        test::readValues<float>(path(name), &found);
        EXPECT_EQ((Window{found.x, found.y, found.x + found.width, found.y + found.height}), data);
        EXPECT_EQ(found.full_x, fullX);
        EXPECT_EQ(found.nchannels, channels);
        return found;
    };
    copy("in.exr", "out.exr");
    const auto kept = expect("out.exr", {100, 0, 108, 6}, 100, 3);
    EXPECT_EQ(kept.get_float_attribute("PixelAspectRatio"), 2.0F);
    EXPECT_EQ(kept.get_string_attribute("Copyright"), "somebody");
    copy("in.exr", "out.exr", {-3, -2, 11, 8});
    EXPECT_EQ(expect("out.exr", {97, -2, 111, 8}, 100, 4).full_width, 8);
    copy("in.exr", "out.png", {-3, -2, 11, 8});
    expect("out.png", {0, 0, 14, 10}, 0, 4);
}

}  // namespace
}  // namespace pictures
