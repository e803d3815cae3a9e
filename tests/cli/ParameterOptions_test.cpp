#include "cli/ParameterOptions.h"

#include <gtest/gtest.h>

#include "cli/Controls.h"
#include "cli/Errors.h"

namespace cli {
namespace {

class Options : public ::testing::Test {
protected:
    void set(const std::string& label, const std::string& text) {
        applySetting(m_set, {m_set.info(m_set.find(label)), text});
    }
    double value(const std::string& label) const { return m_set.value(m_set.find(label)); }
    // The message with which a text is refused.
    std::string refusal(const std::string& label, const std::string& text) {
        try {
            set(label, text);
        } catch (const UsageError& error) {
            return error.what();
        }
        return {};
    }
    PF_ParamDef point(int width, int height, PF_RationalScale scale) const {
        return m_set.evaluate(m_set.find("Focus Point 0"), {0, 1}, {width, height, scale, scale});
    }

    headless::ParameterSet m_set = test::someControls();
};

TEST_F(Options, NamesComeFromLabels) {
    std::vector<std::string> names;
    for (const auto& info : m_set.infos()) {
        if (info.hasValue()) names.push_back(optionName(info));
    }
    const std::vector<std::string> expected{
        "blur-radius",     "roundness",         "vertices",      "edge-behavior",
        "depth-map-layer", "depth-map-channel", "focus-point-0", "focus-point-0-1-interpolation",
        "rotation"};
    EXPECT_EQ(names, expected);
}

TEST_F(Options, NumbersKeepToTheirRange) {
    set("Blur Radius", "12.5");
    EXPECT_EQ(value("Blur Radius"), 12.5);
    set("Roundness", "-0.99");  // stored as a little more than that
    EXPECT_EQ(value("Roundness"), -0.99);
    for (const char* text : {"501", "-1", "much", "3x", "", "nan", "inf"}) {
        const std::string message = refusal("Blur Radius", text);
        EXPECT_NE(message.find("--blur-radius takes a number from 0.0 to 500.0"), std::string::npos)
            << text << ": " << message;
    }
    EXPECT_EQ(value("Blur Radius"), 12.5);
    set("Rotation", "-400");
    EXPECT_EQ(value("Rotation"), -400.0);
}

TEST_F(Options, WholeNumbersAreWhole) {
    set("Vertices", "7");
    EXPECT_EQ(value("Vertices"), 7.0);
    EXPECT_NE(refusal("Vertices", "7.5").find("a whole number from 3 to 10"), std::string::npos);
    EXPECT_NE(refusal("Vertices", "11"), "");
}

TEST_F(Options, BoxesAreOnOrOff) {
    set("Edge Behavior", "on");
    EXPECT_EQ(value("Edge Behavior"), 1.0);
    set("Edge Behavior", "off");
    EXPECT_EQ(value("Edge Behavior"), 0.0);
    EXPECT_NE(refusal("Edge Behavior", "perhaps").find("on or off"), std::string::npos);
}

TEST_F(Options, ChoicesAreTextsOrNumbers) {
    for (const char* text : {"2", "center map", "Center Map", "center-map"}) {
        set("Channel", "1");
        set("Channel", text);
        EXPECT_EQ(value("Channel"), 2.0) << text;
    }
    set("Channel", "(r+g+b)/3");
    EXPECT_EQ(value("Channel"), 3.0);
    const std::string message = refusal("Channel", "4");
    EXPECT_NE(message.find("red (1), center map (2) or (r+g+b)/3 (3)"), std::string::npos)
        << message;
    EXPECT_NE(refusal("Channel", "0"), "");
}

TEST_F(Options, PointsArePixelsOrPercentages) {
    set("Focus Point 0", "960,-540.5");
    EXPECT_EQ(point(1920, 1080, {1, 1}).u.td.x_value, 960 * 65536);
    EXPECT_EQ(point(1920, 1080, {1, 2}).u.td.x_value, 480 * 65536);
    EXPECT_EQ(point(1920, 1080, {1, 1}).u.td.y_value, -540 * 65536 - 32768);
    set("Focus Point 0", "25%,50%");
    EXPECT_EQ(point(200, 100, {1, 1}).u.td.x_value, 50 * 65536);
    EXPECT_EQ(point(200, 100, {1, 1}).u.td.y_value, 50 * 65536);
    for (const char* text : {"960", "1,2,3", "50%,3", "%,%", "a,b"}) {
        EXPECT_NE(refusal("Focus Point 0", text), "") << text;
    }
}

TEST_F(Options, MisspeltNamesFindTheirNeighbour) {
    const std::vector<std::string> known{"--blur-radius", "--vertices", "--rotation"};
    EXPECT_EQ(nearestOption("--blur-raduis", known), "--blur-radius");
    EXPECT_EQ(nearestOption("--vertexes=5", known), "--vertices");
    EXPECT_EQ(nearestOption("--watermark", known), "");
}

TEST_F(Options, TheParserTakesWhatWasDeclared) {
    ParameterOptions options(m_set.infos());
    CLI::App app;
    options.addTo(app);
    std::vector<std::string> arguments{"map.exr:Z", "--depth-map-layer", "-0.5", "--roundness"};
    app.parse(arguments);  // last argument first
    const auto settings = options.settings();
    ASSERT_EQ(settings.size(), 2U);
    EXPECT_EQ(settings[0].info.label, "Roundness");
    EXPECT_EQ(settings[0].text, "-0.5");
    ASSERT_TRUE(options.layer("depth-map-layer").has_value());
    EXPECT_EQ(options.layer("depth-map-layer")->text, "map.exr:Z");
    EXPECT_FALSE(options.layer("custom-blur-shape").has_value());
}

}  // namespace
}  // namespace cli
