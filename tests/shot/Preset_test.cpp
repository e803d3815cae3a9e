// SPDX-License-Identifier: Apache-2.0
#include "shot/Preset.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

#include "headless/Effect.h"
#include "headless/Host.h"
#include "shot/Controls.h"
#include "shot/PresetText.h"

namespace shot {
namespace {

using headless::ParameterInfo;
using headless::ParameterSet;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kVersion = "1.4.0";

// The controls of the real effect.
class Presets : public testing::Test {
protected:
    Presets() {
        headless::Host host;
        headless::Effect effect(host, ORBEL_BUNDLE);
        effect.setUp();
        controls = effect.parameters();
    }
    // The message about a preset with these members; empty if it is all right.
    std::string refusal(const std::string& members) const {
        return refusalOfText(R"({"effect": "Orbel", "version": "1.4.0", )" + members + "}");
    }
    std::string refusalOfText(const std::string& json) const {
        try {
            ParameterSet set = controls;
            applyParameters(parsePreset(json, "look.json", kVersion), "look.json", set);
        } catch (const PresetError& error) {
            return error.what();
        }
        return "";
    }

    ParameterSet controls;
};

// Presets with anything that a preset can hold.
class Random {
public:
    explicit Random(const ParameterSet& controls) : controls_(controls) {}

    Preset preset() {
        Preset made{.version = "1." + std::to_string(below(5)) + ".0"};
        if (yes()) made.frame = frame();
        for (const ParameterInfo& info : controls_.infos()) {
            const bool settable = info.hasValue() && info.type != PF_Param_LAYER;
            if (settable && below(4) > 0) made.parameters.push_back({info.label, keys(info)});
        }
        if (yes()) made.inputs.depth = depth();
        if (yes()) made.inputs.shape = name();
        if (yes()) made.inputs.camera = camera();
        for (const ToolOption& option : toolOptions()) {
            if (yes()) made.tool[option.name] = option.flag ? "true" : name();
        }
        return made;
    }

private:
    int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(engine_); }
    bool yes() { return below(2) == 0; }
    int frame() { return below(2 * kLastFrame + 1) - kLastFrame; }
    double between(double least, double most) {
        const double number = std::uniform_real_distribution<double>(least, most)(engine_);
        return yes() ? std::clamp(std::round(number), least, most) : number;
    }
    // With what JSON and paths find difficult.
    std::string name() {
        static const std::vector<std::string> kPieces = {"a", "/", "\\", "\"", "é", "深",  "####",
                                                         ":", " ", ".",  "\n", "~", "%04d"};
        std::string text = "n";
        for (int i = below(12); i > 0; --i) {
            text += kPieces[static_cast<std::size_t>(below(static_cast<int>(kPieces.size())))];
        }
        return text;
    }
    std::optional<double> number(bool infinite = false) {
        if (!yes()) return std::nullopt;
        if (infinite && below(8) == 0) return std::numeric_limits<double>::infinity();
        return std::exp(between(-20, 20));
    }
    Value value(const ParameterInfo& info, bool percent) {
        switch (info.type) {
            case PF_Param_CHECKBOX:
                return yes();
            case PF_Param_POPUP:
                return info.choices[static_cast<std::size_t>(
                    below(static_cast<int>(info.choices.size())))];
            case PF_Param_POINT:
                return Point{between(-1e4, 1e4), between(-1e4, 1e4), percent};
            case PF_Param_SLIDER:
                return std::round(between(info.validMin, info.validMax));
            case PF_Param_ANGLE:
                return between(-1e4, 1e4);
            default:
                return between(info.validMin, info.validMax);
        }
    }
    Keys keys(const ParameterInfo& info) {
        const bool percent = yes();
        const int count = info.canVary() && yes() ? 2 + below(4) : 1;
        if (count == 1) return {{0, value(info, percent)}};
        Keys made;
        for (int i = 0, at = below(2000) - 1000; i < count; ++i, at += 1 + below(100)) {
            const auto way =
                info.interpolates() ? static_cast<Interpolation>(below(3)) : Interpolation::kHold;
            made.push_back({at, value(info, percent), way});
        }
        return made;
    }
    DepthInput depth() {
        DepthInput made{.near = number(true),
                        .far = number(true),
                        .focus = number(true),
                        .automatic = yes(),
                        .inverse = yes()};
        if (yes()) made.file = name();
        if (yes()) made.kind = yes() ? "disparity" : "normalised";
        if (yes()) made.focusAt = Point{between(-9, 9), between(0, 1e4), yes()};
        return made;
    }
    CameraInput camera() {
        CameraInput made{.exif = yes(),
                         .focalLength = number(),
                         .fStop = number(),
                         .sensorWidth = number(),
                         .sensorHeight = number(),
                         .focus = number(true),
                         .breathing = yes()};
        if (yes()) made.unit = "ft";
        return made;
    }

    const ParameterSet& controls_;
    std::mt19937 engine_{1};
};

TEST_F(Presets, AThousandRandomOnesComeBackAsTheyWereWritten) {
    Random random(controls);
    const auto all = [](const ParameterInfo&) { return true; };
    for (int i = 0; i < 1000; ++i) {
        const Preset made = random.preset();
        for (const Layout layout : {Layout::kIndented, Layout::kOneLine}) {
            const std::string text = presetText(made, layout);
            ASSERT_EQ(parsePreset(text, "look.json", kVersion), made) << text;
            EXPECT_TRUE(std::ranges::all_of(text, [](char c) { return c > 0; }));
            EXPECT_EQ(text.find('\n') == std::string::npos, layout == Layout::kOneLine);
        }
        // And through the effect's controls.
        ParameterSet set = controls;
        applyParameters(made, "look.json", set);
        const std::vector<Parameter> found = parametersOf(set, all);
        for (const Parameter& parameter : made.parameters) {
            ASSERT_THAT(found, testing::Contains(parameter)) << parameter.label;
        }
    }
}

TEST_F(Presets, KeysMoveTheControls) {
    ParameterSet set = controls;
    const Preset preset = parsePreset(R"({"effect": "Orbel", "version": "1.0.0", "parameters": {
        "blur radius": {"keys": [{"frame": 10, "value": 20},
                                 {"frame": 20, "value": 40, "interpolation": "smooth"},
                                 {"frame": 30, "value": 0, "interpolation": "hold"},
                                 {"frame": 40, "value": 8}]},
        "Depth Map/Composite Mode": {"keys": [{"frame": 1, "value": "split"},
                                              {"frame": 9, "value": 1}]},
        "Focus Point 0": {"keys": [{"frame": 0, "value": ["10%", "20%"]},
                                   {"frame": 4, "value": ["30%", "0%"]}]}}})",
                                      "look.json", kVersion);
    applyParameters(preset, "look.json", set);
    const int radius = set.find("Blur Radius");
    const std::pair<int, double> radii[] = {{0, 20},  {15, 30}, {20, 40}, {22, 40 - 40 * 0.104},
                                            {25, 20}, {30, 0},  {39, 0},  {40, 8},
                                            {99, 8}};
    for (const auto& [frame, value] : radii) {
        EXPECT_NEAR(set.value(radius, {frame, 1}), value, 1e-9) << frame;
    }
    EXPECT_EQ(set.value(set.find("Composite Mode"), {8, 1}), 2.0);
    const PF_PointDef point =
        set.evaluate(set.find("Focus Point 0"), {1, 1}, {.width = 200, .height = 100}).u.td;
    EXPECT_EQ(std::pair(point.x_value, point.y_value), std::pair(30 * 65536, 15 * 65536));
}

TEST_F(Presets, ErrorsNameFilePlaceAndRange) {
    const auto keys = [](const std::string& list) {
        return R"("parameters": {"Vertices": {"keys": [)" + list + "]}}";
    };
    const std::pair<std::string, const char*> cases[] = {
        {R"("parameters": {"Blur Radius": 501})", "/parameters/Blur Radius: 501 is outside 0.0 to"},
        {R"("parameters": {"Blur Radius": "5"})",
         "/parameters/Blur Radius: takes a number from 0.0"},
        {R"("parameters": {"Vertices": 3.5})", "3.5 is not a whole number"},
        {R"("parameters": {"Edge Behavior": 1})", "Edge Behavior: takes true or false"},
        {R"("parameters": {"Placement": "Centre"})", "one of \"Center Map\", \"Stretch Map\""},
        {R"("parameters": {"Focus Point 0": 3})", "takes [x, y] in pixels"},
        {R"("parameters": {"Focus Point 0": ["3", "4%"]})", "must be like \"50%\", not \"3\""},
        {R"("parameters": {"Focus Point 0": [1]})", "/parameters/Focus Point 0: must be [x, y]"},
        {R"("parameters": {"Blur Raduis": 5})", "did you mean Blur Radius?"},
        {R"("parameters": {"Vertices": 5, "vertices": 6})", "/parameters/vertices: is given twice"},
        {R"("parameters": {"Layer": "a.png"})", "belongs in \"inputs\""},
        {R"("parameters": {"Depth Map/Chanel": 1})", "/parameters/Depth Map~1Chanel: no parameter"},
        {R"("parameters": {"Use Focus Point": {"keys": [{"frame": 1, "value": true},
                                                       {"frame": 2, "value": false}]}})",
         "can't vary in time"},
        {keys(R"({"frame": 2, "value": 5}, {"frame": 1, "value": 5})"),
         "/parameters/Vertices/keys/1: keys are out of order: frame 1 comes after 2"},
        {keys(R"({"frame": 2, "value": 5}, {"frame": 2, "value": 5})"), "frame 2 has two keys"},
        {keys(R"({"frame": 2, "value": 5}, {"frame": 3, "value": 11})"),
         "/parameters/Vertices/keys/1: 11 is outside 3 to 10"},
        {keys(R"({"frame": 2, "value": 5, "interpolation": "smooth"}, {"frame": 3, "value": 1})"),
         "no values between two keys"},
        {keys(R"({"frame": 2, "value": 5, "interpolation": "ease"})"), "\"hold\", \"linear\" or"},
        {keys(R"({"frame": 1e9, "value": 5})"), "from -999999999 to 999999999, not 1e+09"},
        {keys(R"({"frame": 2.5, "value": 5})"), "/frame: must be a whole number"},
        {keys(R"({"value": 5})"), "/parameters/Vertices/keys/0: lacks \"frame\""},
        {keys(""), "at least one key"},
        {R"("frame": "1")", "/frame: must be a number, not string"},
        {R"("parametres": {})", "/parametres: is not known here; did you mean parameters?"},
        {R"("parameters": [])", "/parameters: must be an object"},
        {R"("inputs": {"depth": {"near": -1}})", "/inputs/depth/near: must be at least 0"},
        {R"("inputs": {"depth": {"kind": "z"}})", "one of distance, disparity, normalised"},
        {R"("inputs": {"shape": {}})", "/inputs/shape: lacks \"file\""},
        {R"("inputs": {"camera": {"f-stop": 0}})", "/inputs/camera/f-stop: must be above 0, not 0"},
        {R"("tool": {"thread": 3})", "/tool/thread: is not known here"},
        {R"("tool": {"linear": "yes"})", "/tool/linear: must be true or false"},
        {R"("tool": {"raw": true, "raw": true})", "\"raw\" is there twice"}};
    for (const auto& [members, words] : cases) {
        EXPECT_THAT(refusal(members), AllOf(StartsWith("look.json: "), HasSubstr(words)));
    }
    const std::pair<std::string, const char*> documents[] = {
        {"", "is not JSON"},
        {"{\n  \"effect\" \"Orbel\"}", "line 2, column 18"},
        {R"({"effect": "Orbel", "version": "1.4.0", "frame": 1e999})", "is not JSON: number overf"},
        {"[]", "must be an object"},
        {R"({"version": "1.4.0"})", "lacks \"effect\""},
        {R"({"effect": "Glow", "version": "1.4.0"})", "/effect: is a preset of Glow, not of Orbel"},
        {R"({"effect": "Orbel", "version": "new"})", "/version: must be like \"1.4.0\""},
        {R"({"effect": "Orbel", "version": "1.4.1"})", "and this is 1.4.0; update it"},
        {R"({"effect": "Orbel", "version": "10.0.0"})", "was written by version 10.0.0"},
        {std::string(100000, '['), "nested too deeply"},
        {"{\"a\": \"\xff\"}", "is not JSON"}};
    for (const auto& [json, words] : documents) {
        EXPECT_THAT(refusalOfText(json), AllOf(StartsWith("look.json: "), HasSubstr(words)));
    }
    EXPECT_EQ(refusal(R"("$schema": "preset.schema.json", "parameters": {"Vertices": 5})"), "");
}

}  // namespace
}  // namespace shot
