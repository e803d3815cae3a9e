// SPDX-License-Identifier: Apache-2.0
// --camera on the command line: what is taken from where, said and refused.
#include <gmock/gmock.h>

#include <cmath>
#include <tuple>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using OIIO::TypeDesc;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 120;
constexpr int kHeight = 80;
const std::string kCamera = "focal-length=50,f-stop=2,sensor-width=36";

class CameraOptions : public FolderTest {
protected:
    // The distances 2, 5 and 20 from left to right; a strip without depth is above.
    void SetUp() override {
        writeImage("in.exr", imageSpec(kWidth, kHeight, {"R", "G", "B"}, TypeDesc::FLOAT));
        writeMap("z.exr", 1.0F);
    }
    void writeImage(const std::string& name, const OIIO::ImageSpec& header) const {
        std::vector<float> colours;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            colours.insert(colours.end(),
                           {static_cast<float>(i % 7) / 7, static_cast<float>(i % 5) / 5, 0.25F});
        }
        writeValues(path(name), header, colours);
    }
    void writeMap(const std::string& name, float unit) const {
        constexpr float kDistances[] = {2, 5, 20};
        std::vector<float> map;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            map.push_back(i < 5 * kWidth ? INFINITY : unit * kDistances[i % kWidth * 3 / kWidth]);
        }
        writeValues(path(name), imageSpec(kWidth, kHeight, {"Z"}, TypeDesc::FLOAT), map);
    }
    ToolRun render(const std::string& camera, const std::vector<std::string>& options,
                   const std::string& input = "in.exr", const std::string& map = "z.exr") const {
        std::vector<std::string> all = {
            "render", path(input), "-o",    path("out.exr"),     "--camera", camera,
            "--bits", "32",        "--raw", "--depth-map-layer", path(map)};
        all.insert(all.end(), options.begin(), options.end());
        return runTool(all);
    }
    std::vector<float> result(const ToolRun& run) const {
        EXPECT_EQ(run.exitCode, 0) << run.err;
        return readValues<float>(path("out.exr"));
    }
};

TEST_F(CameraOptions, SayEverythingThatIsChosen) {
    const ToolRun run = render(kCamera + ",focus=5", {});
    // The radius is 50 mm x 25 mm / 2 / 0.3 mm for each 1/mm: 0.625 at 2 m, 0.417 at infinity.
    EXPECT_THAT(run.err,
                AllOf(HasSubstr("camera: 50 mm at f/2, pixels of 300 um, focus at 5 m\n"),
                      HasSubstr("camera: near 2 m, far inf, Blur Radius 0.1"),
                      HasSubstr(", Focal Distance 0."), HasSubstr(", Profile 0\n"),
                      HasSubstr("camera: blur radius in pixels 0.6 at 2 m, 0.4 at inf; with 6 "
                                "depth layers, a blur between two of them is mixed from two radii "
                                "0.1 apart")));
    EXPECT_THAT(run.err, Not(HasSubstr("warning")));
}

TEST_F(CameraOptions, UnitsFocusAndRegionAgree) {
    const std::string strong = "focal-length=50,f-stop=0.1,sensor-width=36";
    const std::vector<float> expected = result(render(strong + ",focus=5", {}));
    EXPECT_NE(expected, readValues<float>(path("in.exr")));
    writeMap("feet.exr", static_cast<float>(1 / 0.3048));
    writeMap("mm.exr", 1000.0F);
    using Case = std::tuple<std::string, std::vector<std::string>, std::string>;
    const Case cases[] = {{strong, {"--focus", "5"}, "z.exr"},
                          {strong, {"--focus-at", "60,40"}, "z.exr"},
                          {"focal-length=50,f-stop=0.1,sensor-height=24,focus=5", {}, "z.exr"},
                          {strong + ",focus=16.4042", {"--scene-unit", "ft"}, "feet.exr"},
                          {strong + ",focus=5000", {"--scene-unit", "mm"}, "mm.exr"},
                          {strong + ",focus=5", {"--invert-depth-map", "on"}, "z.exr"}};
    for (const auto& [camera, options, map] : cases) {
        const std::vector<float> found = result(render(camera, options, "in.exr", map));
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_NEAR(found[i], expected[i], 1e-4) << camera << " at " << i;
        }
    }
    // The right third alone, which doesn't show the nearest distance.
    const std::vector<float> part =
        result(render(strong + ",focus=5", {"--region", "100,10,20,60", "--crop-to-display"}));
    OIIO::ImageSpec found;
    readValues<float>(path("out.exr"), &found);
    const auto at = static_cast<std::size_t>(3 * ((40 - found.y) * found.width + 110 - found.x));
    ASSERT_LT(at, part.size());
    EXPECT_NEAR(part[at], expected[3 * (40 * kWidth + 110)], 1e-6);
}

TEST_F(CameraOptions, FilesCompleteTheCameraAndOptionsComeFirst) {
    OIIO::ImageSpec header = imageSpec(kWidth, kHeight, {"R", "G", "B"}, TypeDesc::FLOAT);
    header.attribute("focalLength", 85.0F);
    header.attribute("FNumber", 1.2F);
    header.attribute("focus", 3.0F);
    writeImage("frame.exr", header);
    const ToolRun lacking = render("exif", {}, "frame.exr");
    EXPECT_EQ(lacking.exitCode, 2);
    EXPECT_THAT(lacking.err,
                HasSubstr("doesn't say all of the camera: --camera lacks sensor-width\n"));
    EXPECT_THAT(render("exif,sensor-width=36", {}, "frame.exr").err,
                HasSubstr("85 mm at f/1.2, pixels of 300 um, focus at 3 m\n"));
    EXPECT_THAT(render("exif,sensor-width=36,f-stop=2,focus=9", {}, "frame.exr").err,
                HasSubstr("85 mm at f/2, pixels of 300 um, focus at 9 m\n"));
    EXPECT_THAT(render("exif,sensor-width=36", {"--focus-at", "100,40"}, "frame.exr").err,
                HasSubstr("focus at 20 m\n"));
    EXPECT_THAT(render("exif,sensor-width=36,f-stop=500", {"--scene-unit", "cm"}, "frame.exr").err,
                HasSubstr("focus at 300 cm\n"));

    header.attribute("Exif:FocalLengthIn35mmFilm", 85);
    writeImage("photo.exr", header);
    EXPECT_THAT(render("exif", {}, "photo.exr").err, HasSubstr("pixels of 300 um"));
    EXPECT_THAT(render("exif", {"--pixel-aspect", "2"}, "photo.exr").err,
                HasSubstr("pixels of 171.026 um"));  // 43.2666 mm / hypot(240, 80)
}

TEST_F(CameraOptions, WhatTheEffectCannotBlurIsSaid) {
    const ToolRun run = render("focal-length=200,f-stop=0.1,sensor-width=36,focus=5", {});
    EXPECT_EQ(run.exitCode, 0);
    // 200 mm x 2000 mm / 2 / 0.3 mm / 2 m less the same at 5 m: 200 pixels.
    EXPECT_THAT(run.err, AllOf(HasSubstr("200 at 2 m"), Not(HasSubstr("warning"))));
    EXPECT_THAT(
        render("focal-length=200,f-stop=0.02,sensor-width=36,focus=5", {"--resolution", "2"}).err,
        HasSubstr("warning: the lens blurs by up to 1000 pixels, the effect by 500: 3600 "
                  "pixels of the map nearer than 2.85714 m or farther than 20 m get too "
                  "little; an image reduced to 60 pixels in width would do"));
    const std::string far = "focal-length=200,f-stop=0.02,sensor-width=36,focus=2";
    EXPECT_THAT(render(far, {"--resolution", "2"}).err,
                HasSubstr("pixels of the map farther than 2.85714 m get too little"));
}

TEST_F(CameraOptions, ContradictionsAreRefused) {
    using Case = std::tuple<std::string, std::vector<std::string>, const char*>;
    const std::string whole = kCamera + ",focus=5";
    const Case cases[] = {
        {"f-stop=2", {}, "--camera lacks focal-length, sensor-width, focus (or --focus"},
        {kCamera, {}, "--camera lacks focus"},
        {"", {}, "exif or KEY=VALUE"},
        {whole + ",focus=3", {}, "--camera has focus twice"},
        {"focal-length", {}, "not \"focal-length\""},
        {"iso=100", {}, "exif or KEY=VALUE"},
        {"f-stop=0", {}, "a number above 0"},
        {"f-stop=wide", {}, "--camera f-stop takes a number"},
        {whole + ",breathing=yes", {}, "breathing takes on or off"},
        {whole + ",sensor-height=24", {}, "exclude each other"},
        {kCamera + ",focus=0.04,breathing=on", {}, "nearer than its focal length, 50 mm"},
        {whole, {"--scene-unit", "km"}, "--scene-unit takes m, cm"},
        {whole, {"--blur-radius", "9"}, "leave out --blur-radius"},
        {whole, {"--profile", "0"}, "leave out --profile"},
        {whole, {"--focal-distance", "0"}, "leave out --focal-distance"},
        {whole, {"--use-focus-point", "on"}, "exclude each other"},
        {whole, {"--depth-near", "1", "--depth-far", "9"}, "leave out --depth-near"},
        {whole, {"--depth-auto"}, "leave out --depth-near"},
        {whole, {"--focus", "3"}, "exclude each other"},
        {whole, {"--depth-kind", "disparity"}, "is read as disparity"},
        {whole, {"--depth-kind", "normalised"}, "add --depth-kind distance"}};
    for (const auto& [camera, options, words] : cases) {
        const ToolRun run = render(camera, options);
        EXPECT_EQ(run.exitCode, 2) << words;
        EXPECT_THAT(run.err, HasSubstr(words));
    }
    const ToolRun mapless =
        runTool({"render", path("in.exr"), "-o", path("out.exr"), "--camera", whole});
    EXPECT_EQ(mapless.exitCode, 2);
    EXPECT_THAT(mapless.err, HasSubstr("add --depth-map-layer"));
    const ToolRun unit =
        runTool({"render", path("in.exr"), "-o", path("out.exr"), "--scene-unit", "m"});
    EXPECT_EQ(unit.exitCode, 2);
    EXPECT_THAT(unit.err, HasSubstr("--scene-unit is for --camera"));
}

}  // namespace
}  // namespace test
