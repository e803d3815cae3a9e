// A file read into a world and written again, as with a blur of radius 0.
#include <bit>
#include <cmath>
#include <random>
#include <sstream>

#include "cli/Errors.h"
#include "cli/PictureReader.h"
#include "cli/PictureWriter.h"
#include "cli/TestFiles.h"
#include "cli/WorldPixels.h"

namespace cli {
namespace {

using OIIO::TypeDesc;

class RoundTrip : public test::FolderTest {
protected:
    // Gives what was said.
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
        writeResult(path(to), {picture, *world, picture.width(), picture.height()}, messages);
        return said.str();
    }
};

// Colours that don't exceed alpha, with alphas of 0, 1 and everything between.
template <class Value>
std::vector<Value> associatedPixels(int top, std::size_t channels) {
    std::mt19937 random(7);
    std::vector<Value> values;
    for (int i = 0; i < 64 * 64; ++i) {
        const int kind = i % 4;
        const int alpha = kind == 0 ? 0 : kind == 1 ? top : static_cast<int>(random() % (top + 1));
        for (std::size_t c = 0; c + 1 < channels; ++c) {
            values.push_back(static_cast<Value>(random() % (alpha + 1)));
        }
        values.push_back(static_cast<Value>(alpha));
    }
    return values;
}

template <class Value>
std::vector<Value> anyPixels(std::size_t channels) {
    std::mt19937 random(8);
    std::vector<Value> values(64 * 64 * channels);
    for (Value& value : values) value = static_cast<Value>(random());
    return values;
}

struct IntegerCase {
    const char* name;
    const char* suffix;
    std::vector<std::string> channels;
    bool associated;
};

void PrintTo(const IntegerCase& file, std::ostream* out) {
    *out << file.name;
}

class IntegerRoundTrip : public RoundTrip, public ::testing::WithParamInterface<IntegerCase> {
protected:
    template <class Value>
    void check(TypeDesc type, int top, int tolerance) {
        const IntegerCase& file = GetParam();
        const std::string in = std::string("in") + file.suffix;
        const std::string out = std::string("out") + file.suffix;
        auto made = test::imageSpec(64, 64, file.channels, type);
        if (!file.associated) made.attribute("oiio:UnassociatedAlpha", 1);
        const auto values = file.associated ? associatedPixels<Value>(top, file.channels.size())
                                            : anyPixels<Value>(file.channels.size());
        test::writeValues(path(in), made, values);
        EXPECT_EQ(copy(in, out), "");
        OIIO::ImageSpec found;
        const auto copied = test::readValues<Value>(path(out), &found);
        EXPECT_EQ(found.format, type);
        EXPECT_EQ(found.channelnames, file.channels);
        EXPECT_EQ(found.get_int_attribute("oiio:UnassociatedAlpha"),
                  readSpec(path(in)).get_int_attribute("oiio:UnassociatedAlpha"));
        ASSERT_EQ(copied.size(), values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            ASSERT_LE(std::abs(static_cast<int>(copied[i]) - static_cast<int>(values[i])),
                      tolerance)
                << "value " << i;
        }
    }

private:
    static OIIO::ImageSpec readSpec(const std::string& file) {
        OIIO::ImageSpec found;
        test::readValues<float>(file, &found);
        return found;
    }
};

TEST_P(IntegerRoundTrip, EightBitsAreExact) {
    check<std::uint8_t>(TypeDesc::UINT8, 255, 0);
}

TEST_P(IntegerRoundTrip, SixteenBitsAreWithinAStep) {
    check<std::uint16_t>(TypeDesc::UINT16, 65535, 1);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, IntegerRoundTrip,
    ::testing::Values(IntegerCase{"pngColour", ".png", {"R", "G", "B"}, false},
                      IntegerCase{"pngAlpha", ".png", {"R", "G", "B", "A"}, false},
                      IntegerCase{"pngGrey", ".png", {"Y"}, false},
                      IntegerCase{"pngGreyAlpha", ".png", {"Y", "A"}, false},
                      IntegerCase{"tiffColour", ".tif", {"R", "G", "B"}, false},
                      IntegerCase{"tiffStraight", ".tif", {"R", "G", "B", "A"}, false},
                      IntegerCase{"tiffAssociated", ".tif", {"R", "G", "B", "A"}, true},
                      IntegerCase{"tiffGrey", ".tif", {"Y"}, false}),
    [](const auto& file) { return std::string(file.param.name); });

// Steps between two floats of one sign.
int stepsApart(float a, float b) {
    return std::abs(std::bit_cast<std::int32_t>(a) - std::bit_cast<std::int32_t>(b));
}

std::vector<float> lightPixels() {
    std::mt19937 random(9);
    std::uniform_real_distribution<float> light(0.0F, 40.0F);
    std::uniform_real_distribution<float> part(1e-4F, 1.0F);
    std::vector<float> values;
    for (int i = 0; i < 64 * 64; ++i) {
        for (int c = 0; c < 3; ++c) values.push_back(light(random));
        values.push_back(i % 3 == 0 ? 0.0F : i % 3 == 1 ? 1.0F : part(random));
    }
    return values;
}

TEST_F(RoundTrip, FloatIsExactWhereAlphaIsWhole) {
    for (const char* suffix : {".exr", ".tif"}) {
        const std::string in = std::string("in") + suffix;
        const std::string out = std::string("out") + suffix;
        const auto values = lightPixels();
        test::writeValues(path(in), test::imageSpec(64, 64, {"R", "G", "B", "A"}, TypeDesc::FLOAT),
                          values);
        copy(in, out);
        OIIO::ImageSpec found;
        const auto copied = test::readValues<float>(path(out), &found);
        EXPECT_EQ(found.format, TypeDesc::FLOAT);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const bool whole = i / 4 % 3 != 2;
            ASSERT_LE(stepsApart(copied[i], values[i]), whole ? 0 : 2) << suffix << " value " << i;
        }
    }
}

TEST_F(RoundTrip, HalfStaysHalf) {
    const auto made = test::imageSpec(64, 64, {"R", "G", "B", "A"}, TypeDesc::HALF);
    test::writeValues(path("in.exr"), made, lightPixels());
    EXPECT_EQ(copy("in.exr", "out.exr"), "");
    OIIO::ImageSpec found;
    EXPECT_EQ(test::readValues<float>(path("in.exr")),
              test::readValues<float>(path("out.exr"), &found));
    EXPECT_EQ(found.format, TypeDesc::HALF);
}

TEST_F(RoundTrip, OtherFormatsTakeTheNearestBitsAndSayIt) {
    const auto colours = test::imageSpec(64, 64, {"R", "G", "B"}, TypeDesc::UINT16);
    test::writeValues(path("in.png"), colours, anyPixels<std::uint16_t>(3));
    const struct {
        const char* name;
        TypeDesc type;
        bool said;
    } cases[] = {{"out.exr", TypeDesc::FLOAT, true},
                 {"out.tif", TypeDesc::UINT16, false},
                 {"out.ppm", TypeDesc::UINT8, true},
                 {"out.jpg", TypeDesc::UINT8, true},
                 {"out.bmp", TypeDesc::UINT8, true}};
    for (const auto& c : cases) {
        const std::string said = copy("in.png", c.name);
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), c.said ? 1 : 0) << said;
        OIIO::ImageSpec found;
        test::readValues<float>(path(c.name), &found);
        EXPECT_EQ(found.format, c.type) << c.name;
        EXPECT_EQ(found.nchannels, 3) << c.name;
    }
    test::writeValues(path("half.exr"), test::imageSpec(1, 1, {"R", "G", "B"}, TypeDesc::HALF),
                      std::vector<float>{0.5F, 0.25F, 7.0F});
    copy("half.exr", "half.png");
    EXPECT_EQ(test::readValues<std::uint16_t>(path("half.png")),
              (std::vector<std::uint16_t>{32768, 16384, 65535}));
}

TEST_F(RoundTrip, AlphaFollowsTheFormatsConvention) {
    auto straight = test::imageSpec(1, 1, {"R", "G", "B", "A"}, TypeDesc::UINT8);
    straight.attribute("oiio:UnassociatedAlpha", 1);
    test::writeValues<std::uint8_t>(path("in.png"), straight, {200, 100, 50, 51});
    copy("in.png", "out.tga");
    EXPECT_EQ(test::readValues<std::uint8_t>(path("out.tga")),
              (std::vector<std::uint8_t>{200, 100, 50, 51}));
    copy("in.png", "out.exr");
    const auto associated = test::readValues<float>(path("out.exr"));
    EXPECT_NEAR(associated[0], 200.0 / 255.0 * 0.2, 1e-3);
    EXPECT_NEAR(associated[3], 0.2, 1e-3);
    copy("out.exr", "back.tif");
    EXPECT_NEAR(test::readValues<float>(path("back.tif"))[0], 200.0 / 255.0 * 0.2, 1e-3);
    const std::string said = copy("in.png", "out.jpg");  // over black
    EXPECT_NE(said.find("alpha"), std::string::npos) << said;
    EXPECT_NEAR(test::readValues<std::uint8_t>(path("out.jpg"))[0], 40, 3);
}

TEST_F(RoundTrip, MetadataWindowsAndAspectStay) {
    auto made = test::imageSpec(8, 6, {"R", "G", "B"}, TypeDesc::HALF);
    made.full_x = made.x = 100;
    made.full_y = made.y = -20;
    made.full_width = 8;
    made.full_height = 6;
    made.attribute("PixelAspectRatio", 2.0F);
    made.attribute("Copyright", "somebody");
    made.attribute("shot", 17);
    test::writeValues(path("in.exr"), made, std::vector<float>(8 * 6 * 3, 0.5F));
    copy("in.exr", "out.exr");
    OIIO::ImageSpec found;
    test::readValues<float>(path("out.exr"), &found);
    EXPECT_EQ(found.full_x, 100);
    EXPECT_EQ(found.full_y, -20);
    EXPECT_EQ(found.x, 100);
    EXPECT_EQ(found.get_float_attribute("PixelAspectRatio"), 2.0F);
    EXPECT_EQ(found.get_string_attribute("Copyright"), "somebody");
    EXPECT_EQ(found.get_int_attribute("shot"), 17);
}

TEST_F(RoundTrip, OverscanIsADataWindowOrALargerPicture) {
    auto made = test::imageSpec(8, 6, {"R", "G", "B"}, TypeDesc::HALF);
    made.full_x = made.x = 100;
    test::writeValues(path("in.exr"), made, std::vector<float>(8 * 6 * 3, 0.5F));
    copy("in.exr", "out.exr", {-3, -2, 11, 8});
    OIIO::ImageSpec found;
    test::readValues<float>(path("out.exr"), &found);
    EXPECT_EQ(found.x, 97);
    EXPECT_EQ(found.y, -2);
    EXPECT_EQ(found.width, 14);
    EXPECT_EQ(found.full_x, 100);
    EXPECT_EQ(found.full_width, 8);
    EXPECT_EQ(found.nchannels, 4);  // what lies outside the picture is transparent
    copy("in.exr", "out.png", {-3, -2, 11, 8});
    test::readValues<float>(path("out.png"), &found);
    EXPECT_EQ(found.width, 14);
    EXPECT_EQ(found.height, 10);
    EXPECT_EQ(found.nchannels, 4);
}

TEST_F(RoundTrip, UnknownSuffixesAreRefused) {
    test::writeValues<std::uint8_t>(path("in.png"), test::imageSpec(1, 1, {"Y"}, TypeDesc::UINT8),
                                    {7});
    EXPECT_THROW(copy("in.png", "out.xyz"), UsageError);
    EXPECT_THROW(copy("in.png", "out"), UsageError);
    EXPECT_EQ(names(), std::vector<std::string>{"in.png"});
}

}  // namespace
}  // namespace cli
