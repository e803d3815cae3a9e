// SPDX-License-Identifier: Apache-2.0
// What becomes of an image's orientation, windows, alpha, precision and pixel aspect in a render.
#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <tuple>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::HasSubstr;

class RenderPictures : public FolderTest {
protected:
    ToolRun render(const std::string& input, const std::string& output,
                   std::vector<std::string> options) const {
        options.insert(options.begin(), {"render", path(input), "-o", path(output)});
        ToolRun run = runTool(options);
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return run;
    }
    // A black float image with one point of light at (x, y) of its data window.
    void writePoint(const std::string& name, const OIIO::ImageSpec& made, int x, int y) const {
        const auto channels = static_cast<std::size_t>(made.nchannels);
        std::vector<float> values(made.image_pixels() * channels, 0.0F);
        const auto at = static_cast<std::size_t>(y * made.width + x) * channels;
        for (std::size_t c = 0; c < channels; ++c) values[at + c] = 8.0F;
        writeValues(path(name), made, values);
    }
    // The image as light, and its header.
    std::vector<float> read(const std::string& name, OIIO::ImageSpec& found) const {
        return readValues<float>(path(name), &found);
    }
};

TEST_F(RenderPictures, APhonePictureComesOutUpright) {
    auto made = imageSpec(8, 6, {"R", "G", "B"}, TypeDesc::UINT8);
    made.attribute("Orientation", 6);
    std::vector<std::uint8_t> values(8 * 6 * 3, 20);
    for (std::size_t c = 0; c < 3; ++c) values[c] = 250;  // stored upper left: upright upper right
    writeValues(path("phone.tif"), made, values);
    const ToolRun run = render("phone.tif", "out.tif", {"--blur-radius", "0"});
    EXPECT_THAT(run.err, HasSubstr("6x8"));
    OIIO::ImageSpec found;
    const auto pixels = read("out.tif", found);
    ASSERT_EQ(found.width, 6);
    ASSERT_EQ(found.height, 8);
    EXPECT_EQ(found.get_int_attribute("Orientation", 1), 1);
    EXPECT_GT(pixels[5 * 3], 0.9F);
    EXPECT_LT(pixels[0], 0.1F);
}

// The colours beyond alpha that show that the file isn't associated lie outside the region.
TEST_F(RenderPictures, ARegionCountsAlphaAsTheWholeDoes) {
    auto made = imageSpec(40, 10, {"R", "G", "B", "A"}, TypeDesc::UINT8);
    std::vector<std::uint8_t> values(40 * 10 * 4, 51);
    for (std::size_t i = 3; i < values.size(); i += 4) values[i] = 128;
    values[4 * 39] = 255;
    writeValues(path("marked.tif"), made, values);
    const std::vector<std::string> copy{"--blur-radius", "0", "--raw"};
    const ToolRun whole = render("marked.tif", "whole.exr", copy);
    const ToolRun part =
        render("marked.tif", "part.exr", {"--blur-radius", "0", "--raw", "--region", "0,0,8,8"});
    EXPECT_THAT(whole.err, HasSubstr("straight"));
    EXPECT_THAT(part.err, HasSubstr("straight"));
    OIIO::ImageSpec found;
    const auto all = read("whole.exr", found);
    EXPECT_EQ(read("part.exr", found)[0], all[0]);
}

// What is read next takes the file for what it is.
TEST_F(RenderPictures, AnExrSaysThatItHoldsSrgbNumbersAndItsPixelAspect) {
    writeValues(path("grey.png"), imageSpec(8, 8, {"R", "G", "B"}, TypeDesc::UINT8),
                std::vector<std::uint8_t>(8 * 8 * 3, 80));
    render("grey.png", "coded.exr",
           {"--blur-radius", "0", "--colour-out", "sRGB", "--pixel-aspect", "4/3"});
    render("coded.exr", "again.png", {"--blur-radius", "0"});
    OIIO::ImageSpec found;
    EXPECT_NEAR(read("again.png", found)[0], 80.0F / 255.0F, 0.002F);
    read("coded.exr", found);
    EXPECT_NEAR(found.get_float_attribute("PixelAspectRatio"), 4.0F / 3.0F, 1e-6F);
}

// The point is 3 pixels left of the display window.
TEST_F(RenderPictures, OverscanIsASourceOfLightAndIsKept) {
    auto made = imageSpec(40, 20, {"R", "G", "B"}, TypeDesc::FLOAT);
    made.x = -10;
    made.full_width = 20;
    made.full_height = 20;
    writePoint("scan.exr", made, 7, 10);
    const std::vector<std::string> blur{"--blur-radius", "6", "--exposure", "0"};
    render("scan.exr", "out.exr", blur);
    OIIO::ImageSpec found;
    const auto whole = read("out.exr", found);
    EXPECT_EQ(found.x, -10);
    EXPECT_EQ(found.width, 40);
    EXPECT_EQ(found.full_x, 0);
    EXPECT_EQ(found.full_width, 20);

    auto cropped = blur;
    cropped.emplace_back("--crop-to-display");
    render("scan.exr", "cropped.exr", cropped);
    const auto display = read("cropped.exr", found);
    EXPECT_EQ(found.x, 0);
    EXPECT_EQ(found.width, 20);
    EXPECT_GT(display[10 * 20 * 3], 0.01F) << "light from beyond the display window";
    EXPECT_EQ(display[10 * 20 * 3], whole[(10 * 40 + 10) * 3]);
    render("scan.exr", "out.png", blur);
    read("out.png", found);
    EXPECT_EQ(found.width, 20);
}

// The map has the display window's size. Its left half is in focus, and so is the pixel asked for.
TEST_F(RenderPictures, MapsAndPointsCountInTheDisplayWindow) {
    auto made = imageSpec(60, 20, {"R", "G", "B"}, TypeDesc::FLOAT);
    made.x = -30;
    made.full_width = 30;
    made.full_height = 20;
    std::vector<float> light;
    for (int i = 0; i < 60 * 20 * 3; ++i) light.push_back(static_cast<float>(i / 3 % 2));
    writeValues(path("wide.exr"), made, light);
    std::vector<float> depth(30 * 20, 0.0F);
    for (std::size_t i = 0; i < depth.size(); ++i) depth[i] = i % 30 < 15 ? 1.0F : 0.0F;
    writeValues(path("map.tif"), imageSpec(30, 20, {"Y"}, TypeDesc::FLOAT), depth);
    render("wide.exr", "out.exr",
           {"--blur-radius", "8", "--resolution", "16", "--depth-map-layer", path("map.tif"),
            "--use-focus-point", "on", "--focus-point-0", "4,10", "--focus-point-1", "4,10",
            "--composite-mode", "split"});
    OIIO::ImageSpec found;
    auto pixels = read("out.exr", found);
    const auto contrast = [&](int x) {  // x in the display window
        const auto at = [&](int column) {
            return pixels[static_cast<std::size_t>(10 * 60 + column + 30) * 3];
        };
        return std::fabs(at(x) - at(x + 1));
    };
    EXPECT_GT(contrast(3), 0.9F);
    EXPECT_LT(contrast(25), 0.2F);
    EXPECT_GT(contrast(-20), 0.9F) << "the map's edge is repeated";

    // A map with the same overscan holds depth there, too.
    auto scanned = imageSpec(60, 20, {"Y"}, TypeDesc::FLOAT);
    scanned.x = -30;
    scanned.full_width = 30;
    scanned.full_height = 20;
    depth.assign(60 * 20, 0.0F);
    for (std::size_t i = 0; i < depth.size(); ++i) depth[i] = i % 60 >= 15 ? 1.0F : 0.0F;
    writeValues(path("scanned.exr"), scanned, depth);
    render("wide.exr", "out.exr",
           {"--blur-radius", "8", "--resolution", "16", "--depth-map-layer", path("scanned.exr"),
            "--focus", "1"});
    pixels = read("out.exr", found);
    EXPECT_GT(contrast(3), 0.9F);
    EXPECT_GT(contrast(-8), 0.9F);
    EXPECT_LT(contrast(-25), 0.2F);
}

TEST_F(RenderPictures, ADataWindowApartFromTheDisplayGivesBlack) {
    auto made = imageSpec(8, 8, {"R", "G", "B"}, TypeDesc::HALF);
    made.x = 200;
    made.full_width = made.full_height = 16;
    writePoint("apart.exr", made, 4, 4);
    render("apart.exr", "out.png", {"--blur-radius", "3"});
    OIIO::ImageSpec found;
    EXPECT_THAT(read("out.png", found), testing::Each(0.0F));
    EXPECT_EQ(found.width, 16);
}

TEST_F(RenderPictures, ColoursWithoutAlphaDontBecomeLight) {
    auto made = imageSpec(4, 1, {"R", "G", "B", "A"}, TypeDesc::UINT8);
    made.attribute("oiio:UnassociatedAlpha", 1);
    const std::vector<std::uint8_t> values{255, 255, 255, 0, 255, 255, 255, 0,
                                           255, 255, 255, 0, 255, 255, 255, 255};
    writeValues(path("hidden.png"), made, values);
    render("hidden.png", "out.exr", {"--blur-radius", "0"});
    OIIO::ImageSpec found;
    const auto pixels = read("out.exr", found);
    for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(pixels[i], 0.0F);
    EXPECT_NEAR(pixels[12], 1.0F, 1e-3F);
}

TEST_F(RenderPictures, ACopyOfAssociatedFloatsHasTheirBits) {
    std::vector<float> values;
    for (int i = 0; i < 64; ++i) {
        const auto x = static_cast<float>(i);
        values.insert(values.end(), {0.1F + x / 7.0F, x / 3.0F, 1e-3F * x, x / 63.0F});
    }
    const auto made = imageSpec(8, 8, {"R", "G", "B", "A"}, TypeDesc::FLOAT);
    for (const std::string suffix : {".exr", ".tif"}) {
        writeValues(path("in" + suffix), made, values);
        render("in" + suffix, "out" + suffix, {"--blur-radius", "0", "--raw"});
        EXPECT_EQ(readValues<float>(path("out" + suffix)), values) << suffix;
    }
}

TEST_F(RenderPictures, RendersInFloatAndWritesTheTypeAskedFor) {
    std::vector<std::uint8_t> values;
    for (int i = 0; i < 64 * 64 * 3; ++i) values.push_back(static_cast<std::uint8_t>(i * 37 % 251));
    const auto made = imageSpec(64, 64, {"R", "G", "B"}, TypeDesc::UINT8);
    writeValues(path("pass0.png"), made, values);
    const auto mean = [&](const std::string& name) {
        OIIO::ImageSpec found;
        const auto pixels = read(name, found);
        double sum = 0.0;
        for (const float value : pixels) sum += static_cast<double>(value);
        return sum / static_cast<double>(pixels.size()) * 255.0;
    };
    const double before = mean("pass0.png");
    for (int pass = 0; pass < 8; ++pass) {
        render("pass" + std::to_string(pass) + ".png", "pass" + std::to_string(pass + 1) + ".png",
               {"--blur-radius", "3", "--exposure", "0"});
    }
    EXPECT_NEAR(mean("pass8.png"), before, 0.3);

    render("pass0.png", "wide.png", {"--blur-radius", "3", "--output-type", "uint16"});
    OIIO::ImageSpec found;
    read("wide.png", found);
    EXPECT_EQ(found.format, TypeDesc::UINT16);
    const ToolRun refused =
        runTool({"render", path("pass0.png"), "-o", path("x.png"), "--output-type", "half"});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("PNG can't hold half"));
}

TEST_F(RenderPictures, PassesOtherChannelsThrough) {
    auto made = imageSpec(6, 4, {"R", "G", "B", "A", "Z", "normal.X"}, TypeDesc::HALF);
    made.channelformats = {TypeDesc::HALF, TypeDesc::HALF,  TypeDesc::HALF,
                           TypeDesc::HALF, TypeDesc::FLOAT, TypeDesc::HALF};
    std::vector<float> values(6 * 4 * 6, 0.25F);
    for (std::size_t i = 4; i < values.size(); i += 6) values[i] = 1000.1F + static_cast<float>(i);
    writeValues(path("layers.exr"), made, values);
    render("layers.exr", "out.exr", {"--blur-radius", "2", "--exposure", "0", "--pass-through"});
    OIIO::ImageSpec found;
    const auto pixels = read("out.exr", found);
    const int z = found.channelindex("Z");
    ASSERT_GE(z, 0);
    EXPECT_GE(found.channelindex("normal.X"), 0);
    EXPECT_EQ(found.channelformat(z), TypeDesc::FLOAT);
    for (std::size_t i = 0; i < 24; ++i) {
        EXPECT_EQ(pixels[i * 6 + static_cast<std::size_t>(z)], values[i * 6 + 4]);
    }
}

// Before the pixels are read: those of the inputs can't be.
TEST_F(RenderPictures, SaysWhyChannelsCannotPass) {
    const std::vector<float> values(6 * 4 * 4, 0.5F);
    auto made = imageSpec(6, 4, {"R", "G", "B", "Z"}, TypeDesc::FLOAT);
    made.attribute("compression", "none");
    const auto writeDamaged = [&](const std::string& name) {
        writeValues(path(name), made, values);
        std::string bytes = readText(path(name));
        bytes.resize(bytes.size() - 150);
        writeText(path(name), bytes);
    };
    writeDamaged("in.exr");
    made.attribute("Orientation", 6);
    writeDamaged("turned.exr");
    made.attribute("Orientation", 1);
    made.full_width = 4;
    writeDamaged("scan.exr");
    made.full_width = 9;
    writeDamaged("small.exr");
    using Case = std::tuple<const char*, const char*, std::vector<std::string>, const char*>;
    const Case cases[] = {
        {"in.exr", "x.png", {}, "an EXR to write, not PNG; name one with -o"},
        {"turned.exr", "x.exr", {}, "is turned upright"},
        {"in.exr", "x.exr", {"--downsample", "1/2"}, "leave out --downsample"},
        {"in.exr", "x.exr", {"--region", "0,0,2,2"}, "leave out --region"},
        {"in.exr", "x.exr", {"--keep-overscan", "--edge-behavior", "off"}, "out --keep-overscan"},
        {"scan.exr", "x.exr", {"--crop-to-display"}, "leave out --crop-to-display"},
        {"small.exr", "x.exr", {}, "doesn't cover the display window"}};
    for (const auto& [input, output, options, words] : cases) {
        std::vector<std::string> all{"render", path(input), "-o", path(output), "--pass-through"};
        all.insert(all.end(), options.begin(), options.end());
        const ToolRun run = runTool(all);
        EXPECT_EQ(run.exitCode, 2) << words;
        EXPECT_THAT(run.err, HasSubstr(words));
    }
}

// More rows than a strip has, in tiles that don't divide them, some of them cut by the edges.
TEST_F(RenderPictures, PassesTilesThrough) {
    constexpr int kWidth = 1100;
    constexpr int kHeight = 1300;
    auto made = imageSpec(kWidth, kHeight, {"R", "G", "B", "Z"}, TypeDesc::FLOAT);
    made.x = made.full_x = -3;
    made.y = made.full_y = 5;
    made.tile_width = 64;
    made.tile_height = 48;
    std::vector<float> values(std::size_t{kWidth} * kHeight * 4, 0.25F);
    for (std::size_t i = 3; i < values.size(); i += 4) values[i] = static_cast<float>(i);
    writeValues(path("tiles.exr"), made, values);
    render("tiles.exr", "out.exr", {"--blur-radius", "0", "--pass-through"});
    OIIO::ImageSpec found;
    const auto pixels = read("out.exr", found);
    ASSERT_EQ(found.channelindex("Z"), 3);
    EXPECT_TRUE(pixels == values);
}

// The spot of a point has the shape of a circle on the screen.
TEST_F(RenderPictures, PixelAspectSqueezesTheAperture) {
    writePoint("point.exr", imageSpec(81, 81, {"R", "G", "B"}, TypeDesc::FLOAT), 40, 40);
    for (const auto& [text, aspect] :
         {std::pair{"4/3", 4.0 / 3.0}, {"1.9", 1.9}, {"2/1", 2.0}, {"10/11", 10.0 / 11.0}}) {
        render(
            "point.exr", "out.exr",
            {"--blur-radius", "18", "--exposure", "0", "--roundness", "1", "--pixel-aspect", text});
        OIIO::ImageSpec found;
        const auto pixels = read("out.exr", found);
        double across = 0.0;
        double down = 0.0;
        for (int y = 0; y < 81; ++y) {
            for (int x = 0; x < 81; ++x) {
                const auto light =
                    static_cast<double>(pixels[static_cast<std::size_t>(y * 81 + x) * 3]);
                across += light * (x - 40) * (x - 40);
                down += light * (y - 40) * (y - 40);
            }
        }
        EXPECT_NEAR(std::sqrt(down / across), aspect, 0.03) << text;
    }
}

TEST_F(RenderPictures, StandardStreamsCarryImages) {
    writePoint("in.exr", imageSpec(16, 16, {"R", "G", "B"}, TypeDesc::HALF), 8, 8);
    const std::string tool = std::string(ORBEL_TOOL) + " render - -o - --blur-radius 0 ";
    for (const char* format : {"exr", "png", "ppm"}) {
        const std::string out = path(std::string("out.") + format);
        std::string command = tool;
        command.append("--output-format ").append(format);
        command.append(" <").append(path("in.exr")).append(" >").append(out);
        command.append(" 2>/dev/null");
        ASSERT_EQ(std::system(command.c_str()), 0) << format;
        OIIO::ImageSpec found;
        const auto pixels = readValues<float>(out, &found);
        EXPECT_EQ(found.width, 16);
        EXPECT_GE(pixels[(8 * 16 + 8) * 3], 1.0F) << format;
    }
    const ToolRun refused =
        runTool({"render", path("in.exr"), "-o", path("x.exr"), "--output-format", "png"});
    EXPECT_EQ(refused.exitCode, 2);
}

}  // namespace
}  // namespace test
