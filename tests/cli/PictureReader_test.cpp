#include "cli/PictureReader.h"

#include <cmath>
#include <limits>

#include "cli/Errors.h"
#include "cli/TestFiles.h"
#include "cli/WorldPixels.h"

namespace cli {
namespace {

using OIIO::TypeDesc;

class PictureReader : public test::FolderTest {
protected:
    std::string refusal(const std::string& text) const {
        try {
            readPicture(text);
        } catch (const Failure& failure) {
            return failure.what();
        }
        return {};
    }
};

TEST_F(PictureReader, AWholeNameWinsOverALayer) {
    const auto grey = test::imageSpec(2, 1, {"Y"}, TypeDesc::UINT8);
    test::writeValues<unsigned char>(path("a.png"), grey, {1, 2});
    std::filesystem::copy_file(path("a.png"), path("a.png:Z"));
    EXPECT_EQ(parseSourceName(path("a.png:Z")).layer, "");
    EXPECT_EQ(parseSourceName(path("a.png:depth.Z")).layer, "depth.Z");
    EXPECT_EQ(parseSourceName(path("a.png:depth.Z")).file.string(), path("a.png"));
    EXPECT_EQ(parseSourceName(path("missing.png:Z")).layer, "");
}

TEST_F(PictureReader, BadFilesAreNamed) {
    test::writeText(path("notes.png"), "these are no pixels");
    EXPECT_NE(refusal(path("missing.png")).find("cannot find " + path("missing.png")),
              std::string::npos);
    EXPECT_NE(refusal(path("notes.png")).find("cannot read " + path("notes.png")),
              std::string::npos);
    EXPECT_NE(refusal(path("")).find("folder"), std::string::npos);
    const auto rgb = test::imageSpec(64, 64, {"R", "G", "B"}, TypeDesc::UINT8);
    test::writeValues<unsigned char>(path("cut.png"), rgb,
                                     std::vector<unsigned char>(64 * 64 * 3, 77));
    std::filesystem::resize_file(path("cut.png"), 60);
    EXPECT_NE(refusal(path("cut.png")).find(path("cut.png")), std::string::npos);
}

TEST_F(PictureReader, ThePictureIsTheDisplayWindow) {
    auto made = test::imageSpec(3, 2, {"R", "G", "B", "A"}, TypeDesc::FLOAT);
    made.x = 11;
    made.y = 21;
    made.full_x = 10;
    made.full_y = 20;
    made.full_width = 3;
    made.full_height = 4;
    test::writeValues<float>(path("window.exr"), made, std::vector<float>(3 * 2 * 4, 0.5F));
    const Picture picture = readPicture(path("window.exr"));
    EXPECT_EQ(picture.window, (Window{10, 20, 13, 24}));
    EXPECT_TRUE(picture.cropped);
    EXPECT_EQ(picture.pixel(0)[3], 0.0F);      // 10,20: outside the data window
    EXPECT_EQ(picture.pixel(4)[3], 0.5F);      // 11,21
    EXPECT_EQ(picture.pixel(3 * 3)[3], 0.0F);  // 10,23
    const Picture everything = readPicture(path("window.exr"), Extent::Everything);
    EXPECT_EQ(everything.window, (Window{10, 20, 14, 24}));
    EXPECT_FALSE(everything.cropped);
}

TEST_F(PictureReader, WindowsApartLeaveNoPixels) {
    auto made = test::imageSpec(3, 2, {"R", "G", "B"}, TypeDesc::FLOAT);
    made.x = 100;
    made.full_width = 10;
    made.full_height = 10;
    test::writeValues<float>(path("apart.exr"), made, std::vector<float>(3 * 2 * 3, 0.5F));
    EXPECT_NE(refusal(path("apart.exr")).find("no pixels"), std::string::npos);
}

TEST_F(PictureReader, ALayerOfAMultiLayerFile) {
    const auto made = test::imageSpec(
        1, 1, {"V.Combined.R", "V.Combined.G", "V.Combined.B", "V.Depth.Z"}, TypeDesc::HALF);
    test::writeValues<float>(path("multi.exr"), made, {1.0F, 2.0F, 3.0F, 9.0F});
    const Picture colours = readPicture(path("multi.exr"));
    EXPECT_EQ(colours.pixels, (std::vector<float>{1.0F, 2.0F, 3.0F, 1.0F}));
    EXPECT_EQ(colours.leftOut, std::vector<std::string>{"V.Depth"});
    const Picture depth = readPicture(path("multi.exr:V.Depth.Z"));
    EXPECT_EQ(depth.pixels, (std::vector<float>{9.0F, 9.0F, 9.0F, 1.0F}));
    EXPECT_TRUE(depth.grey);
    EXPECT_NE(refusal(path("multi.exr:W")).find("V.Combined, V.Depth"), std::string::npos);
}

TEST_F(PictureReader, PartsOfAMultiPartFileAreLayers) {
    auto left = test::imageSpec(1, 1, {"R", "G", "B"}, TypeDesc::HALF);
    left.attribute("oiio:subimagename", "beauty");
    auto right = test::imageSpec(1, 1, {"Z"}, TypeDesc::FLOAT);
    right.attribute("oiio:subimagename", "depth");
    const OIIO::ImageSpec specs[] = {left, right};
    auto output = OIIO::ImageOutput::create(path("parts.exr"));
    ASSERT_TRUE(output->open(path("parts.exr"), 2, specs));
    const float values[] = {1.0F, 2.0F, 3.0F};
    output->write_image(TypeDesc::FLOAT, values);
    ASSERT_TRUE(output->open(path("parts.exr"), specs[1], OIIO::ImageOutput::AppendSubimage));
    output->write_image(TypeDesc::FLOAT, values + 2);
    ASSERT_TRUE(output->close());
    EXPECT_EQ(readPicture(path("parts.exr")).pixels[1], 2.0F);
    EXPECT_EQ(readPicture(path("parts.exr:depth.Z")).pixels[1], 3.0F);
    EXPECT_EQ(readPicture(path("parts.exr:depth")).pixels[1], 3.0F);
}

TEST(Picture, RepairsAreCounted) {
    const float inf = std::numeric_limits<float>::infinity();
    Picture picture;
    picture.hasAlpha = picture.associated = true;
    picture.window = {0, 0, 3, 1};
    picture.pixels = {NAN, inf, -inf, 1.0F, 0.0F, 0.0F, 0.25F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F};
    const Repairs repairs = repair(picture);
    EXPECT_EQ(repairs.notFinite, 3U);
    EXPECT_EQ(repairs.lightWithoutAlpha, 1U);
    EXPECT_EQ(picture.pixels[0], 0.0F);
    EXPECT_EQ(picture.pixels[1], 65504.0F);
    EXPECT_EQ(picture.pixels[2], -65504.0F);
    picture.associated = false;  // straight colour under alpha 0 is no light
    EXPECT_EQ(repair(picture).lightWithoutAlpha, 0U);
}

TEST(WorldPixels, SixteenBitsDoNotDrift) {
    Picture picture;
    picture.type = SampleType::UInt16;
    picture.window = {0, 0, 65536, 1};
    for (int v = 0; v < 65536; ++v) {
        const float value = static_cast<float>(v) / 65535.0F;
        picture.pixels.insert(picture.pixels.end(), {value, value, value, 1.0F});
    }
    picture.window = {0, 0, 4096, 16};
    const auto world = makeWorld(picture, 16);
    EXPECT_EQ(world->row<PF_Pixel16>(15)[4095].red, 32768);
    Picture again = picture;
    again.pixels = straightPixels(*world);
    for (std::size_t v = 0; v < 65536; ++v) {
        const double back = std::round(static_cast<double>(again.pixel(v)[0]) * 65535.0);
        ASSERT_LE(std::fabs(back - static_cast<double>(v)), 1.0) << v;
        again.pixel(v)[0] = static_cast<float>(back / 65535.0);
    }
    const auto second = makeWorld(again, 16);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 4096; ++x) {
            ASSERT_EQ(second->row<PF_Pixel16>(y)[x].red, world->row<PF_Pixel16>(y)[x].red);
        }
    }
}

}  // namespace
}  // namespace cli
