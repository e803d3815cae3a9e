// SPDX-License-Identifier: Apache-2.0
#include "pictures/depth/DepthMapReader.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sstream>

#include "pictures/Errors.h"
#include "pictures/depth/DepthChannel.h"
#include "pictures/depth/DepthFocus.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::Not;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr auto kDistance = DepthKind::kDistance;
constexpr auto kDisparity = DepthKind::kDisparity;
constexpr auto kNormalised = DepthKind::kNormalised;

class DepthMapReader : public test::FolderTest {
protected:
    // One row of pixels, in float or, for a PNG, in the bits of `Value`.
    template <class Value>
    void write(const std::string& name, const std::vector<std::string>& channels,
               const std::vector<Value>& values) const {
        const int width = static_cast<int>(values.size() / channels.size());
        test::writeValues(path(name),
                          test::imageSpec(width, 1, channels, OIIO::BaseTypeFromC<Value>::value),
                          values);
    }
    // The red values that the effect gets.
    std::vector<float> read(const DepthMapping& mapping, const std::string& name = "z.exr",
                            const MapControls& controls = {}) {
        said.str("");
        Messages messages(said, false);
        const DepthSource source =
            readDepth(path(name), Extent::kDisplay, mapping, controls, messages);
        tellDepth(source, mapping, messages);
        range = source.range;
        const DepthCurve curve(source.kind, mapping, source.range, controls.inverted);
        const Picture map = applyCurve(source, curve);
        bits = worldBits(map.type);
        std::vector<float> values;
        for (std::size_t i = 0; i < map.pixelCount(); ++i) values.push_back(map.pixel(i)[0]);
        return values;
    }
    void expect(const std::vector<float>& map, const DepthMapping& mapping,
                const std::vector<float>& values) {
        write("z.exr", {"Z"}, map);
        EXPECT_THAT(read(mapping), testing::Pointwise(testing::FloatNear(1e-6F), values));
    }

    std::ostringstream said;
    DepthRange range;
    int bits = 0;
};

TEST_F(DepthMapReader, DistancesBecomeOneAtNearAndZeroAtFar) {
    expect({2, 6, 10, 1, 50}, {.near = 2.0, .far = 10.0}, {1, 0.5F, 0, 1, 0});
    expect({2, 4, 10, 1, 50}, {.near = 2.0, .far = 10.0, .inverse = true}, {1, 0.375F, 0, 1, 0});
    expect({4, 50}, {.near = 2.0, .far = HUGE_VAL, .inverse = true}, {0.5F, 0.04F});
    expect({5, 5, kInfinity}, {.automatic = true}, {1, 1, 0});
    expect({0.5F, 2, kInfinity}, {.curve = [](double d) { return d < 1 ? 3 : 1 / d; }},
           {1, 0.5F, 0});
    EXPECT_EQ(bits, 32);
    expect({2, 3}, {.near = 5.0, .far = 9.0}, {1, 1});
    EXPECT_THAT(said.str(), HasSubstr("no values between --depth-near and --depth-far"));
}

TEST_F(DepthMapReader, WhatMarksTheSkyIsFarAndCounted) {
    expect({3, kInfinity, NAN, 1e10F, -kInfinity, 9, 999e6F}, {.near = 3.0, .far = 9.0},
           {1, 0, 0, 0, 0, 0, 0});
    expect({3, kInfinity, NAN, 1e9F, 0, -3, 9, 6}, {.automatic = true},
           {1, 0, 0, 0, 0, 0, 0, 0.5F});
    EXPECT_EQ(range.least, 3.0);
    EXPECT_EQ(range.most, 9.0);
    EXPECT_THAT(said.str(), HasSubstr("distance, 3 to 9, 5 pixels without depth count as far"));
    expect({0.5F, NAN, 1e10F, 1}, {}, {0.5F, 0, 0, 1});
    EXPECT_THAT(said.str(), HasSubstr("normalised, 0.5 to 1, 2 pixels without depth"));
    EXPECT_THAT(read({}, "z.exr", {.inverted = true}), ElementsAre(0.5F, 1, 1, 1));
    for (const float nothing : {kInfinity, 0.0F, -4.0F}) {
        write<float>("z.exr", {"Z"}, {nothing, 1e10F});
        EXPECT_THROW(read({.automatic = true}), Failure);
    }
}

TEST_F(DepthMapReader, ValuesAboveOneAreDistancesUnlessTheUserSaysOtherwise) {
    expect({2, 4, 10}, {}, {1, 0.375F, 0});
    EXPECT_THAT(said.str(), HasSubstr("z.exr: distance, 2 to 10 (linear in 1/distance)"));
    expect({0, 0.5F, 1, 1e10F}, {}, {0, 0.5F, 1, 0});
    EXPECT_THAT(said.str(), HasSubstr("normalised, 0 to 1"));
    expect({0.25F, 80}, {.kind = kNormalised}, {0.25F, 1});
    EXPECT_THAT(said.str(), HasSubstr("warning: "));
    EXPECT_THROW(read({.kind = kNormalised, .automatic = true}), UsageError);
}

TEST_F(DepthMapReader, LargeDisparitiesAreNear) {
    expect({80, 0, 20, kInfinity, -1}, {.kind = kDisparity}, {1, 0, 0.25F, 0, 0});
    EXPECT_EQ(range.nothing, 2U);
    expect({80, 40, 20}, {.kind = kDisparity, .automatic = true}, {1, 1 / 3.0F, 0});
    expect({80, 40, 20}, {.kind = kDisparity, .near = 60.0, .far = 20.0}, {1, 0.5F, 0});
    EXPECT_THROW(read({.kind = kDisparity, .near = 20.0, .far = 60.0}), UsageError);
    expect({4, 2, 0}, {.kind = kDisparity, .curve = [](double d) { return std::isinf(d) ? 0 : d; }},
           {0.25F, 0.5F, 0});
    write<float>("d.exr", {"disparity"}, {4, 2, 1});
    EXPECT_THAT(read({}, "d.exr"), ElementsAre(1, FloatEq(1 / 3.0F), 0));
}

TEST_F(DepthMapReader, WholeNumbersAreFractionsUnlessTheyAreSaidToBeDistances) {
    write<std::uint8_t>("z.png", {"Y"}, {0, 51, 255});
    EXPECT_THAT(read({}, "z.png"), ElementsAre(0, FloatEq(0.2F), 1));
    EXPECT_EQ(bits, 8);
    EXPECT_THAT(read({.near = 0.2, .far = 1.0}, "z.png"), ElementsAre(0, 1, 0));
    write<std::uint16_t>("z.png", {"Y"}, {0, 800, 1200, 1600});
    EXPECT_THAT(read({.kind = kDistance, .automatic = true}, "z.png"), ElementsAre(0, 1, 0.5F, 0));
    EXPECT_EQ(range.most, 1600.0);
}

TEST_F(DepthMapReader, TheDepthOfSeveralChannelsIsTaken) {
    const float inf = kInfinity;
    write<float>("r.exr", {"R", "G", "B", "A", "Z"}, {.1F, .2F, .3F, 1, 4, .1F, .2F, .3F, 0, inf});
    EXPECT_THAT(read({}, "r.exr"), ElementsAre(1, 0));
    EXPECT_THAT(said.str(),
                AllOf(HasSubstr("r.exr:Z: distance, 4 to 4"), Not(HasSubstr("colour"))));
    read({}, "r.exr", {.channel = MapChannel::kAlpha});
    EXPECT_THAT(said.str(), HasSubstr("r.exr: normalised, 0 to 1"));

    const auto found = [](const std::vector<std::string>& names, const std::string& layer = "") {
        std::vector<ChannelPlace> channels;
        for (const std::string& name : names) channels.push_back({name, 0, 0});
        return findDepthChannel(channels, layer).value_or("none");
    };
    const std::vector<std::string> blender = {"V.Combined.R", "V.Normal.X", "V.Normal.Y",
                                              "V.Normal.Z",   "V.Mist.Z",   "V.Depth.Z"};
    EXPECT_EQ(found(blender), "V.Depth.Z");
    EXPECT_EQ(found(blender, "V"), "V.Depth.Z");
    EXPECT_EQ(found(blender, "V.Normal"), "none");
    EXPECT_EQ(found({"V.Mist.Z", "left.Depth", "R"}), "left.Depth");
    EXPECT_EQ(found({"left.Z", "R", "z"}), "z");
    EXPECT_EQ(found({"R", "G", "B", "rugged.depths"}), "none");
}

TEST_F(DepthMapReader, AColourPictureWarnsAndTransparentPixelsAreFar) {
    write<float>("c.exr", {"R", "G", "B", "A"},
                 {.5F, .5F, .5F, 1, .25F, .25F, .25F, .5F, 0, 0, 0, 0});
    EXPECT_THAT(read({}, "c.exr", {.inverted = true}), ElementsAre(0.5F, 0.5F, 1));
    EXPECT_THAT(said.str(), Not(HasSubstr("warning")));
    write<std::uint8_t>("c.png", {"R", "G", "B"}, {9, 9, 9, 10, 20, 30});
    read({}, "c.png");
    EXPECT_THAT(said.str(), HasSubstr("warning: " + path("c.png") + " is a colour image"));
    read({}, "c.png", {.channel = MapChannel::kRed, .channelGiven = true});
    EXPECT_THAT(said.str(), Not(HasSubstr("warning")));
}

TEST(MapPlacement, MapsOfTheSameShapeWithinAPixelAreKnown) {
    EXPECT_TRUE(sameShape({1600, 1200}, {400, 300}));
    EXPECT_TRUE(sameShape({1000, 667}, {100, 67}));
    EXPECT_TRUE(sameShape({100, 67}, {1000, 667}));
    EXPECT_FALSE(sameShape({1600, 1200}, {400, 302}));
    EXPECT_FALSE(sameShape({1600, 1200}, {300, 400}));
}

// A picture of one row whose values are the numbers of its display window's pixels.
Picture rowOf(Window window, Window display) {
    Picture picture;
    picture.window = window;
    picture.display = display;
    for (int x = window.left; x < window.right; ++x) {
        picture.pixels.insert(picture.pixels.end(), kChannels, static_cast<float>(x));
    }
    return picture;
}

TEST(MapPlacement, MapsLieOnEveryPixelOfTheImage) {
    const auto laid = [](const Picture& image, const Picture& map, MapPlacement placement) {
        const auto world = layOver(image, map, placement, pictures::Steps::kSmooth);
        std::vector<float> values;
        for (int x = 0; x < world->width(); ++x) values.push_back(world->get(x, 0).green);
        return values;
    };
    using testing::ElementsAre;
    using enum MapPlacement;
    const Picture eight = rowOf({0, 0, 8, 1}, {0, 0, 8, 1});
    const Picture four = rowOf({0, 0, 4, 1}, {0, 0, 4, 1});
    EXPECT_THAT(laid(eight, four, kStretch),
                ElementsAre(0, 0.25F, 0.75F, 1.25F, 1.75F, 2.25F, 2.75F, 3));
    const auto kept = layOver(eight, four, kStretch, pictures::Steps::kKept);
    for (int x = 0; x < 8; ++x) EXPECT_EQ(kept->get(x, 0).green, x / 2);
    EXPECT_THAT(laid(four, eight, kStretch), ElementsAre(0.5F, 2.5F, 4.5F, 6.5F));
    EXPECT_THAT(laid(eight, eight, kCenter), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    // Two pixels of overscan, which a map may have as well.
    const Picture scan = rowOf({-2, 0, 6, 1}, {0, 0, 4, 1});
    EXPECT_THAT(laid(scan, four, kCenter), ElementsAre(0, 0, 0, 1, 2, 3, 3, 3));
    EXPECT_THAT(laid(scan, scan, kCenter), ElementsAre(-2, -1, 0, 1, 2, 3, 4, 5));
    EXPECT_EQ(mapPixel({4, 1}, scan, kCenter, 1, 0), 3U);
    EXPECT_EQ(mapPixel({8, 1}, four, kStretch, 6, 0), 3U);
    EXPECT_EQ(mapPixel({8, 1}, four, kCenter, 3, 0), 1U);
    EXPECT_EQ(mapPixel({8, 1}, four, kCenter, 7, 0), 3U);
}

TEST_F(DepthMapReader, FocusAtAPixelIsTheMedianAroundIt) {
    write<float>("z.exr", {"Z"}, {2, 2, 90, 2, 8, 8, 8, 8, 8, kInfinity});
    Messages messages(said, false);
    const DepthSource source = readDepth(path("z.exr"), Extent::kDisplay, {}, {}, messages);
    const DepthCurve curve(source.kind, {}, source.range, false);
    const auto at = [&](int x) {
        return sampleDepth(source, curve, {10, 1}, MapPlacement::kCenter, x, 0);
    };
    EXPECT_EQ(at(2).value, 2.0);
    EXPECT_EQ(at(2).position, 1.0);
    EXPECT_EQ(at(9).value, 8.0);
    EXPECT_NEAR(at(9).position, (1 / 8.0 - 1 / 90.0) / (1 / 2.0 - 1 / 90.0), 1e-6);
    EXPECT_EQ(focalDistance(0.25, false), 0.25);
    EXPECT_EQ(focalDistance(0.25, true), 0.75);
    EXPECT_EQ(focalDistance(curve.position(1.0), false), 2.0);
}

}  // namespace
}  // namespace pictures
