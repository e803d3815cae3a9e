// SPDX-License-Identifier: Apache-2.0
// What a file says about its pixels: orientation, alpha, and whether they are all there.
#include "pictures/files/PictureFile.h"

#include <gmock/gmock.h>

#include "pictures/Errors.h"
#include "pictures/files/PictureReader.h"
#include "support/Noise.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

using OIIO::TypeDesc;
using test::imageSpec;

class PictureFileTest : public test::FolderTest {};

// Each stored pixel of a 5x3 image is unique: 16 y + x.
TEST_F(PictureFileTest, TurnsEveryOrientationUpright) {
    std::vector<std::uint8_t> stored;
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 5; ++x) stored.push_back(static_cast<std::uint8_t>(16 * y + x));
    }
    // The pixels at the upper left and the upper right of the upright image.
    const std::array<std::pair<int, int>, 8> corners{{{0x00, 0x04},
                                                      {0x04, 0x00},
                                                      {0x24, 0x20},
                                                      {0x20, 0x24},  // 1 to 4: rows stay rows
                                                      {0x00, 0x20},
                                                      {0x20, 0x00},
                                                      {0x24, 0x04},
                                                      {0x04, 0x24}}};  // 5 to 8: rows are columns
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        auto made = imageSpec(5, 3, {"Y"}, TypeDesc::UINT8);
        made.attribute("Orientation", orientation);
        test::writeValues(path("turned.tif"), made, stored);
        const Picture picture = readPicture(path("turned.tif"));
        const bool transposed = orientation > 4;
        ASSERT_EQ(picture.width(), transposed ? 3 : 5);
        ASSERT_EQ(picture.height(), transposed ? 5 : 3);
        EXPECT_EQ(picture.turned, orientation != 1);
        const auto code = [&](std::size_t pixel) {
            return static_cast<int>(std::lround(picture.pixel(pixel)[0] * 255.0F));
        };
        const auto [left, right] = corners[static_cast<std::size_t>(orientation - 1)];
        EXPECT_EQ(code(0), left);
        EXPECT_EQ(code(static_cast<std::size_t>(picture.width() - 1)), right);
    }
}

// A part of a turned image is the same as in the whole one.
TEST_F(PictureFileTest, ReadsAPartOfATurnedImage) {
    auto made = imageSpec(40, 30, {"R", "G", "B"}, TypeDesc::UINT8);
    made.attribute("Orientation", 6);
    made.tile_width = made.tile_height = 16;
    Noise noise;
    std::vector<std::uint8_t> values(40 * 30 * 3);
    for (auto& value : values) value = static_cast<std::uint8_t>(noise.upTo(255));
    test::writeValues(path("tiles.tif"), made, values);
    const Picture whole = readPicture(path("tiles.tif"));
    PictureFile file(path("tiles.tif"));
    std::size_t covered = 0;
    file.read({7, 11, 20, 33}, [&](const Window& strip, std::span<const float> rgba) {
        for (int y = strip.top; y < strip.bottom; ++y) {
            for (int x = strip.left; x < strip.right; ++x, ++covered) {
                const auto at =
                    static_cast<std::size_t>((y - strip.top) * strip.width() + x - strip.left);
                const auto in = static_cast<std::size_t>(y * whole.width() + x);
                ASSERT_EQ(rgba[at * kChannels + 1], whole.pixel(in)[1]) << x << ',' << y;
            }
        }
    });
    EXPECT_EQ(covered, 13U * 22U);
}

TEST_F(PictureFileTest, DecidesAboutAlphaByFileFormatAndColours) {
    const auto associated = [&](const std::string& name, const OIIO::ImageSpec& made, int colour,
                                AlphaRule rule = AlphaRule::kByFile) {
        const auto top = static_cast<std::uint8_t>(colour);
        test::writeValues<std::uint8_t>(path(name), made, {top, top, top, 100});
        const Picture picture = readPicture(path(name), Extent::kDisplay, 0.0F, rule);
        return picture.hasAlpha && picture.associated;
    };
    const auto rgba = imageSpec(1, 1, {"R", "G", "B", "A"}, TypeDesc::UINT8);
    auto straight = rgba;
    straight.attribute("oiio:UnassociatedAlpha", 1);
    EXPECT_TRUE(associated("a.tif", rgba, 100));
    EXPECT_FALSE(associated("a.tif", rgba, 110)) << "colours above alpha";
    EXPECT_FALSE(associated("a.tif", straight, 90));
    EXPECT_FALSE(associated("a.png", straight, 90));
    EXPECT_FALSE(associated("a.bmp", rgba, 90)) << "straight by custom";
    EXPECT_TRUE(associated("a.tif", rgba, 110, AlphaRule::kAssociated));
    EXPECT_FALSE(associated("a.tif", rgba, 90, AlphaRule::kStraight));
    EXPECT_FALSE(associated("a.tif", rgba, 90, AlphaRule::kIgnore));
}

struct Kind {
    const char* file;
    TypeDesc type;
    int channels;
    const char* compression;
    int bits;
};

// A file that ends early is an error in one line, and no library prints lines of its own.
class CutFile : public test::FolderTest, public testing::WithParamInterface<Kind> {
protected:
    // The bytes at the end that aren't looked at: the extension area and the footer of a TGA file.
    static std::size_t unread(const std::string& name) { return name == "a.tga" ? 495 + 26 : 0; }
    void expectEveryCutRefused(const std::string& name) const {
        EXPECT_NO_THROW(readPicture(path(name)));
        const std::string bytes = test::readText(path(name));
        const std::string cut = path("cut-" + name);
        testing::internal::CaptureStderr();
        std::vector<std::size_t> sizes;
        for (std::size_t i = 1; i < 20; ++i) sizes.push_back(bytes.size() * i / 20);
        for (std::size_t lost = 1; lost <= 14; ++lost) {
            sizes.push_back(bytes.size() - unread(name) - lost);
        }
        for (const std::size_t size : sizes) {
            test::writeText(cut, bytes.substr(0, size));
            const std::string refusal = test::refusalOf([&] { readPicture(cut); });
            EXPECT_NE(refusal, "") << name << ": " << size << " of " << bytes.size();
            EXPECT_EQ(refusal.find('\n'), std::string::npos) << refusal;
            EXPECT_LT(refusal.size(), cut.size() + 200) << refusal;
            EXPECT_EQ(refusal.find("()"), std::string::npos) << refusal;
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
};

TEST_P(CutFile, IsRefused) {
    const Kind& kind = GetParam();
    const std::string whole = path(kind.file);
    if (!OIIO::ImageOutput::create(whole)) GTEST_SKIP() << "no encoder here";
    OIIO::ImageSpec made(150, 100, kind.channels, kind.type);
    if (*kind.compression != '\0') made.attribute("compression", kind.compression);
    if (kind.bits != 0) made.attribute("oiio:BitsPerSample", kind.bits);
    Noise noise;
    std::vector<float> values(150UL * 100UL * static_cast<std::size_t>(kind.channels));
    for (float& value : values) value = static_cast<float>(noise.unit());
    test::writeValues(whole, made, values);
    expectEveryCutRefused(kind.file);
}
using CutFileWithoutEncoder = CutFile;

// Numbers of 1 to 4 bytes.
std::string bytesOf(std::initializer_list<std::pair<int, std::uint32_t>> numbers, bool bigEndian) {
    std::string bytes;
    for (const auto& [size, value] : numbers) {
        for (int i = 0; i < size; ++i) {
            const int shift = 8 * (bigEndian ? size - 1 - i : i);
            bytes += static_cast<char>(value >> shift & 0xFFU);
        }
    }
    return bytes;
}

// 4 channels of 12 rows with 10 pixels of 8 bits. Only colours are read, and the file ends with
// alpha.
std::string psd(bool runLengths) {
    std::string bytes = "8BPS";
    bytes += bytesOf({{2, 1}, {4, 0}, {2, 0}, {2, 4}, {4, 12}, {4, 10}, {2, 8}, {2, 3}}, true);
    bytes += bytesOf({{4, 0}, {4, 0}, {4, 0}, {2, runLengths ? 1 : 0}}, true);
    for (int row = 0; runLengths && row < 4 * 12; ++row) bytes += bytesOf({{2, 11}}, true);
    for (int row = 0; row < 4 * 12; ++row) {
        if (runLengths) bytes += '\x09';
        bytes += "0123456789";
    }
    return bytes;
}

// 16x16 pixels as blocks of the kind `code`, or of four bytes each if it is empty.
std::string dds(const std::string& code, std::size_t size) {
    const bool plain = code.empty();
    std::string bytes = "DDS ";
    bytes += bytesOf({{4, 124}, {4, plain ? 0x100F : 0x81007}, {4, 16}, {4, 16}, {4, 64}}, false);
    bytes.resize(76);
    bytes += bytesOf({{4, 32}, {4, plain ? 0x41 : 4}}, false);
    bytes += plain ? std::string(4, '\0') : code;
    bytes += bytesOf({{4, plain ? 32 : 0}, {4, 0xFF0000}, {4, 0xFF00}, {4, 0xFF}}, false);
    bytes += bytesOf({{4, 0xFF000000}, {4, 0x1000}}, false);
    bytes.resize(128);
    bytes.append(size, 'x');
    return bytes;
}

TEST_F(CutFileWithoutEncoder, IsRefused) {
    test::writeText(path("a.psd"), psd(false));
    test::writeText(path("b.psd"), psd(true));
    test::writeText(path("a.dds"), dds("", 16UL * 16 * 4));
    test::writeText(path("b.dds"), dds("DXT1", 4UL * 4 * 8));
    test::writeText(path("c.dds"), dds("DXT5", 4UL * 4 * 16));
    for (const char* name : {"a.psd", "b.psd", "a.dds", "b.dds", "c.dds"}) {
        expectEveryCutRefused(name);
    }
}

// Its reader takes whatever there is.
TEST_F(CutFileWithoutEncoder, IsRefusedByNameIfNobodyWouldNotice) {
    const auto made = imageSpec(8, 8, {"Z"}, TypeDesc::FLOAT);
    test::writeValues(path("a.zfile"), made, std::vector<float>(64, 1.0F));
    EXPECT_NE(test::refusalOf([&] { readPicture(path("a.zfile")); }).find("format zfile"),
              std::string::npos);
}

// Many programs put something behind the end, such as a phone's second picture or film.
TEST_F(CutFileWithoutEncoder, IsNotAFileWithMoreThanAPicture) {
    for (const char* name : {"a.png", "a.jpg", "a.gif"}) {
        const auto made = imageSpec(40, 30, {"R", "G", "B"}, TypeDesc::UINT8);
        test::writeValues(path(name), made, std::vector<std::uint8_t>(40UL * 30 * 3, 90));
        const std::string bytes = test::readText(path(name));
        for (const std::string& more : {bytes, std::string(100000, 'x'), std::string(3, '\0')}) {
            test::writeText(path(name), bytes + more);
            EXPECT_NO_THROW(readPicture(path(name))) << name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Formats, CutFile,
    testing::Values(
        Kind{"a.exr", TypeDesc::HALF, 4, "zip", 0}, Kind{"b.exr", TypeDesc::FLOAT, 3, "none", 0},
        Kind{"a.tif", TypeDesc::UINT8, 3, "none", 0}, Kind{"b.tif", TypeDesc::UINT16, 4, "lzw", 0},
        Kind{"a.jpg", TypeDesc::UINT8, 3, "", 0}, Kind{"a.png", TypeDesc::UINT8, 4, "", 0},
        Kind{"a.bmp", TypeDesc::UINT8, 3, "", 0}, Kind{"a.dpx", TypeDesc::UINT16, 3, "", 10},
        Kind{"b.dpx", TypeDesc::UINT16, 3, "", 16}, Kind{"a.gif", TypeDesc::UINT8, 3, "", 0},
        Kind{"a.hdr", TypeDesc::FLOAT, 3, "", 0}, Kind{"a.iff", TypeDesc::UINT8, 4, "", 0},
        Kind{"a.jp2", TypeDesc::UINT8, 3, "", 0}, Kind{"a.ppm", TypeDesc::UINT8, 3, "", 0},
        Kind{"a.rla", TypeDesc::UINT8, 4, "", 0}, Kind{"a.sgi", TypeDesc::UINT8, 4, "", 0},
        Kind{"a.tga", TypeDesc::UINT8, 4, "rle", 0}, Kind{"a.webp", TypeDesc::UINT8, 4, "", 0},
        Kind{"a.heic", TypeDesc::UINT8, 3, "", 0}, Kind{"a.fits", TypeDesc::UINT8, 3, "", 0}),
    [](const auto& tested) {
        std::string name = tested.param.file;
        std::replace(name.begin(), name.end(), '.', '_');
        return name;
    });

}  // namespace
}  // namespace pictures
