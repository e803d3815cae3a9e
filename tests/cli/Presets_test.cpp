// SPDX-License-Identifier: Apache-2.0
// Presets, keys and the settings in a picture's metadata, through the built tool.
#include <gmock/gmock.h>

#include <cmath>
#include <sstream>
#include <utility>

#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

namespace fs = std::filesystem;
using OIIO::TypeDesc;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr int kWidth = 48;
constexpr int kHeight = 32;

class Presets : public FolderTest {
protected:
    void SetUp() override {
        std::vector<std::uint8_t> photo;
        std::vector<float> light, depth, wide;
        for (int i = 0; i < kWidth * kHeight; ++i) {
            const int x = i % kWidth;
            const bool near = x > 20 && x < 30;
            for (int c = 0; c < 3; ++c) {
                photo.push_back(static_cast<std::uint8_t>(i % 53 == 0 ? 255 : (i * (c + 3)) % 90));
                light.push_back(static_cast<float>(photo.back()) / 80.0F);
            }
            depth.push_back(near ? 2.0F : 5.0F + static_cast<float>(x) / 10.0F);
        }
        OIIO::ImageSpec described = imageSpec(kWidth, kHeight, {"R", "G", "B"}, TypeDesc::UINT8);
        described.attribute("ImageDescription", "Harbour");
        writeValues(path("photo.png"), described, photo);
        writeValues(path("light.exr"), imageSpec(kWidth, kHeight, {"R", "G", "B"}, TypeDesc::HALF),
                    light);
        fs::create_directory(path("maps"));
        writeValues(path("maps/z.exr"), imageSpec(kWidth, kHeight, {"Z"}, TypeDesc::FLOAT), depth);
        OIIO::ImageSpec over = imageSpec(kWidth, kHeight, {"R", "G", "B"}, TypeDesc::HALF);
        over.full_x = 8;
        over.full_width = kWidth - 16;
        writeValues(path("over.exr"), over, light);
    }
    // Words with a suffix of letters are files in the folder.
    ToolRun run(const std::string& words) const {
        std::vector<std::string> all;
        std::istringstream stream(words);
        for (std::string word; stream >> word;) {
            const std::string suffix = fs::path(word.substr(0, word.find(':'))).extension();
            const bool file = suffix.size() > 3 && std::isalpha(suffix[1]) != 0;
            all.push_back(file || word == "maps" ? path(word) : word);
        }
        return runTool(all);
    }
    void expectRun(const std::string& words) const {
        const ToolRun done = run(words);
        EXPECT_EQ(done.exitCode, 0) << words << ": " << done.err;
    }
    void expectRefusal(const std::string& words, int code, const std::string& message) const {
        const ToolRun done = run(words);
        EXPECT_EQ(done.exitCode, code) << done.err;
        EXPECT_EQ(std::count(done.err.begin(), done.err.end(), '\n'), 1) << done.err;
        EXPECT_THAT(done.err, HasSubstr(message)) << words;
    }
    void writePreset(const std::string& name, const std::string& members) const {
        writeText(path(name), R"({"effect": "Orbel", "version": "1.4.0", )" + members + "}");
    }
    // Renders with either words and expects equal pixels, and others without any of them.
    void expectSame(const std::string& input, const std::string& a, const std::string& b) const {
        expectRun("render " + input + " -o a.exr " + a);
        expectRun("render " + input + " -o b.exr " + b);
        expectRun("render " + input + " -o c.exr");
        EXPECT_EQ(pixels("a.exr"), pixels("b.exr")) << a << " and " << b;
        EXPECT_NE(pixels("a.exr"), pixels("c.exr")) << a;
    }
    std::vector<float> pixels(const std::string& name) const {
        return readValues<float>(path(name));
    }
};

TEST_F(Presets, APresetActsAsItsOptionsAndOptionsOverrideIt) {
    writePreset("look.json", R"("parameters": {"Blur Radius": 4, "Vertices": 5, "Exposure": 0,
        "Composite Mode": "Split"}, "tool": {"linear": true, "region": "4,4,30,20"})");
    expectSame("photo.png", "--preset look.json",
               "--blur-radius 4 --vertices 5 --exposure 0 --composite-mode split --linear --region "
               "4,4,30,20");
    expectSame("photo.png", "--preset look.json --blur-radius 7 --linear=false",
               "--blur-radius 7 --vertices 5 --exposure 0 --composite-mode split --region "
               "4,4,30,20");
    // What excludes a setting of the preset takes its place.
    writePreset("maps/focus.json", R"("parameters": {"Blur Radius": 4}, "inputs": {"depth":
        {"file": "z.exr", "auto": true, "focus": 3}}, "tool": {"occlusion": 3})");
    const std::string map = "--blur-radius 4 --depth-map-layer maps/z.exr ";
    expectSame("light.exr", "--preset maps/focus.json",
               map + "--depth-auto --focus 3 --occlusion 3");
    expectSame("light.exr", "--preset maps/focus.json --focal-distance 0.5 --occlusion off",
               map + "--depth-auto --focal-distance 0.5");
    expectSame("light.exr", "--preset maps/focus.json --focus-at 5,5 --depth-near 1 --depth-far 9",
               map + "--focus-at 5,5 --depth-near 1 --depth-far 9 --occlusion 3");
    writePreset("camera.json", R"("inputs": {"depth": {"file": "maps/z.exr"}, "camera":
        {"focal-length": 50, "f-stop": 1.4, "sensor-width": 2, "focus": 3, "unit": "ft"}})");
    expectSame("light.exr", "--preset camera.json --focus 4",
               "--depth-map-layer maps/z.exr --scene-unit ft --focus 4 --camera "
               "focal-length=50,f-stop=1.4,sensor-width=2");
    expectSame("light.exr",
               "--preset look.json --camera "
               "focal-length=50,f-stop=1.4,sensor-width=2,focus=3 --depth-map-layer maps/z.exr",
               "--vertices 5 --exposure 0 --composite-mode split --linear --region 4,4,30,20 "
               "--camera focal-length=50,f-stop=1.4,sensor-width=2,focus=3 --depth-map-layer "
               "maps/z.exr");
}

TEST_F(Presets, AnAnimationHasTheConstantsOfItsFrame) {
    writePreset("at.json", R"("frame": 1005)");
    const std::string at = "--preset at.json ";
    expectSame("photo.png",
               at + "--blur-radius 1001:0,1009:8 --vertices 1001:3,1005:7 --exposure "
                    "1001:0:smooth,1017:16 --composite-mode 1:split,1004:normal",
               "--blur-radius 4 --vertices 7 --exposure 2.5");
    // What the tool reads of the controls is of the frame, too.
    const std::string map = "--depth-map-layer maps/z.exr --depth-near 1 --depth-far 12 ";
    expectSame("light.exr",
               at + map +
                   "--occlusion 3 --focal-distance 1000:0,1010:1 --blur-radius "
                   "1000:0,1010:16 --exposure 1000:0,1005:1,1010:9",
               map + "--occlusion 3 --focal-distance 0.5 --blur-radius 8 --exposure 1");
    expectSame("light.exr",
               at + map + "--invert-depth-map on --occlusion 3 --focal-distance 1000:0,1010:0.6",
               map + "--invert-depth-map on --occlusion 3 --focal-distance 0.3");
    expectSame("photo.png", at + "--pixel-aspect 0.7 --blur-radius 1000:2,1010:6",
               "--pixel-aspect 0.7 --blur-radius 4");
    expectSame("over.exr",
               at + map +
                   "--placement stretch-map --use-focus-point on --blur-radius 6 "
                   "--focus-point-0 1005:40%/50%,1006:0%/0%",
               map +
                   "--placement stretch-map --use-focus-point on --blur-radius 6 "
                   "--focus-point-0 40%,50%");
    const ToolRun squeezed = run("render photo.png -o a.png " + at +
                                 "--pixel-aspect 1.5 --rotation 0:0,2000:90 --roundness 0.5");
    EXPECT_THAT(squeezed.err, HasSubstr("only whole ratios are possible"));
    expectRun("render photo.png -o a.png " + at + "--blur-radius 1005:0,1006:20");
    EXPECT_EQ(pixels("a.png"), pixels("photo.png"));
}

TEST_F(Presets, AnImagesSettingsGiveTheSameImageAgain) {
    const std::string map = "--depth-map-layer maps/z.exr ";
    const std::string cases[] = {
        "photo.png -o out/a.png --blur-radius 1:2,9:30:smooth --vertices 5 --downsample 1/2",
        "photo.png -o out/a.jpg --linear --bits 16 --edge-behavior off --keep-overscan",
        "photo.png -o out/a.tif --output-type float --focus-point-0 3,4 --region 2,2,20,20",
        "photo.png -o out/a.exr --colour-in Gamma2.2 --custom-blur-shape photo.png",
        "light.exr -o out/a.exr --blur-radius 6 --focus 2.5 --occlusion 3 " + map,
        "light.exr -o out/a.exr --focus-at 50%,50% --depth-kind dist --depth-near 1 --depth-far "
        "inf --depth-inverse " +
            map,
        "light.exr -o out/a.exr --scene-unit m --pixel-aspect 3/2 --exposure 1 --resolution 9 "
        "--camera focal-length=50,f-stop=1.4,sensor-width=2,focus=3 " +
            map,
        "over.exr -o out/a.exr --crop-to-display --raw --alpha ignore --blur-radius 3"};
    fs::create_directory(path("out"));
    fs::create_directory(path("looks"));
    for (const std::string& words : cases) {
        const std::string input = words.substr(0, words.find(' '));
        const std::string file = words.substr(words.find("out/"), 9);
        const auto renderAgain = [&](const std::string& preset) {
            std::ostringstream line;
            line << "render " << input << " -o " << file << " --preset " << preset;
            expectRun(line.str());
        };
        expectRun("render " + words);
        const std::string first = readText(path(file));
        expectRun("params --from " + file + " --save-preset looks/a.json");
        renderAgain("looks/a.json");
        EXPECT_EQ(readText(path(file)), first) << words;
        EXPECT_THAT(readText(path("looks/a.json")), Not(HasSubstr(path("")))) << words;
        // Without a preset of its own.
        const std::string from = "looks/" + fs::path(file).filename().string();
        fs::rename(path(file), path(from));
        renderAgain(from);
        EXPECT_EQ(readText(path(file)), first) << words;
    }
    // The frame is a part of it.
    writePreset("at.json", R"("frame": 7, "parameters": {"Blur Radius": {"keys":
        [{"frame": 1, "value": 0}, {"frame": 9, "value": 8}]}})");
    expectRun("render photo.png -o a.png --preset at.json --save-preset saved.json");
    expectRun("render photo.png -o b.png --preset a.png");
    expectRun("render photo.png -o c.png --preset saved.json");
    expectRun("render photo.png -o d.png --blur-radius 6 --no-settings");
    EXPECT_EQ(readText(path("a.png")), readText(path("b.png")));
    EXPECT_EQ(readText(path("a.png")), readText(path("c.png")));
    EXPECT_EQ(pixels("a.png"), pixels("d.png"));
}

TEST_F(Presets, SettingsTakeThePlaceOfOthersAndLeaveTheDescription) {
    for (const std::string name : {"b.jpg", "b.tif", "b.avif", "b.png", "b.exr"}) {
        expectRun("render photo.png -o a.tif --vertices 5");
        if (run("render a.tif -o " + name + " --vertices 9").exitCode == 2) continue;  // no AVIF
        EXPECT_THAT(run("params --from " + name).out,
                    AllOf(HasSubstr("\"Vertices\": 9"), Not(HasSubstr("\"Vertices\": 5"))));
        expectRun("render " + name + " -o c.tif --no-settings --blur-radius 0");
        OIIO::ImageSpec found;
        readValues<float>(path("c.tif"), &found);
        EXPECT_EQ(found.get_string_attribute("ImageDescription"), "Harbour") << name;
        expectRefusal("params --from c.tif", 1, "holds no settings");
    }
    // An animation that is too long for the format.
    std::ostringstream list;
    for (int i = 0; i < 2000; ++i) list << (i == 0 ? "" : ",") << i << ':' << i % 7;
    const std::string keys = list.str();
    EXPECT_THAT(run("render photo.png -o a.jpg --blur-radius " + keys).err,
                HasSubstr("too long for JPEG"));
    expectRun("render photo.png -o a.png --blur-radius " + keys);
    EXPECT_THAT(run("params --from a.png").out, HasSubstr("\"frame\": 1999"));
}

TEST_F(Presets, PathsAreRelativeToThePreset) {
    fs::create_directory(path("looks"));
    expectRun(
        "render light.exr -o a.exr --depth-map-layer maps/z.exr:Z --save-preset "
        "looks/a.json");
    EXPECT_THAT(readText(path("looks/a.json")), HasSubstr("\"file\": \"../maps/z.exr:Z\""));
    fs::rename(path("looks"), path("maps/looks"));
    expectRefusal("render light.exr -o b.exr --preset maps/looks/a.json", 1, "z.exr");
    expectRun(
        "params --preset maps/looks/a.json --depth-map-layer maps/z.exr --save-preset "
        "maps/looks/b.json");
    expectRun("render light.exr -o b.exr --preset maps/looks/b.json");
    EXPECT_EQ(pixels("a.exr"), pixels("b.exr"));
}

TEST_F(Presets, BadOnesAreOneLineAndNothingIsWritten) {
    writePreset("range.json", R"("parameters": {"Blur Radius": 501})");
    writePreset("bits.json", R"("tool": {"bits": 12})");
    writePreset("camera.json", R"("inputs": {"depth": {"file": "maps/z.exr"}, "camera":
        {"exif": true}})");
    writePreset("good.json", R"("parameters": {"Blur Radius": 5})");
    const std::vector<std::string> before = names();
    const std::string render = "render photo.png -o out.png --preset ";
    expectRefusal(render + "none.json", 1, "none.json; check the name");
    expectRefusal(render + "maps", 1, "cannot read the preset ");
    expectRefusal(render + "photo.png", 1, "photo.png holds no settings");
    expectRefusal(render + "range.json", 1,
                  "range.json: /parameters/Blur Radius: 501 is outside 0.0 to 500.0");
    expectRefusal(render + "bits.json", 1, "bits.json: /tool/bits)");
    expectRefusal(render + "bits.json --occlusion", 2, "--occlusion needs a depth map");
    expectRefusal(render + "camera.json --blur-radius 3", 2, "(--camera is from ");
    expectRefusal("render photo.png -o good.json --preset good.json", 2, "must end in");
    expectRefusal("render photo.png -o a.png --save-preset a.png", 2, "is the output");
    expectRefusal("render photo.png -o a.png --save-preset photo.png", 2, "is an input");
    expectRefusal("render photo.png -o a.png --save-preset no/such.json", 1, "no folder");
    expectRefusal("params --preset good.json", 2, "--state or --save-preset");
    expectRefusal("params --preset good.json --from photo.png", 2, "exclude each other");
    const std::string options = "render photo.png -o out.png ";
    expectRefusal(options + "--blur-radius 3:1,3:2", 2, "--blur-radius: frame 3 has two keys");
    expectRefusal(options + "--blur-radius 3:1,4:501", 2, "0.0 to 500.0, not \"501\"");
    expectRefusal(options + "--vertices 3:4:linear,5:6", 2, "no values between two keys");
    expectRefusal(options + "--use-focus-point 3:on,5:off", 2, "can't vary in time");
    expectRefusal(options + "--focus-point-0 3:1%/2%,5:1/2", 2, "in pixels or in percent");
    EXPECT_EQ(names(), before);
}

}  // namespace
}  // namespace test
