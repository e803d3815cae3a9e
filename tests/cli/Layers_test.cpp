#include "cli/Layers.h"

#include <gtest/gtest.h>

#include "cli/Errors.h"

namespace cli {
namespace {

std::vector<ChannelPlace> onePart(const std::vector<std::string>& names) {
    std::vector<ChannelPlace> channels;
    for (const std::string& name : names) {
        channels.push_back({name, 0, static_cast<int>(channels.size())});
    }
    return channels;
}

// A multi-layer file as renderers write it; no channel stands outside a layer.
const std::vector<ChannelPlace> kRender =
    onePart({"ViewLayer.Depth.Z", "ViewLayer.Combined.B", "ViewLayer.Combined.A",
             "ViewLayer.Combined.R", "ViewLayer.Combined.G", "ViewLayer.Normal.X",
             "ViewLayer.Normal.Y", "ViewLayer.Normal.Z", "ViewLayer.UV.U", "ViewLayer.UV.V"});

std::vector<int> coloursOf(const std::vector<ChannelPlace>& channels, const std::string& wanted) {
    return chooseChannels(channels, wanted, "shot.exr").colours;
}

std::string refusal(const std::vector<ChannelPlace>& channels, const std::string& wanted) {
    try {
        chooseChannels(channels, wanted, "shot.exr");
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

TEST(Layers, ColoursOutsideAnyLayerComeFirst) {
    const auto channels = onePart({"Combined.R", "Combined.G", "Combined.B", "B", "G", "R", "A"});
    const ChannelChoice choice = chooseChannels(channels, "", "shot.exr");
    EXPECT_EQ(choice.colours, (std::vector<int>{5, 4, 3}));
    EXPECT_EQ(choice.alpha, 6);
    EXPECT_EQ(choice.leftOut, std::vector<std::string>{"Combined"});
}

TEST(Layers, WithoutThemTheFirstLayerInColour) {
    const ChannelChoice choice = chooseChannels(kRender, "", "shot.exr");
    EXPECT_EQ(choice.colours, (std::vector<int>{3, 4, 1}));
    EXPECT_EQ(choice.alpha, 2);
    EXPECT_EQ(choice.leftOut,
              (std::vector<std::string>{"ViewLayer.Depth", "ViewLayer.Normal", "ViewLayer.UV"}));
}

TEST(Layers, LayersAndChannelsByName) {
    EXPECT_EQ(coloursOf(kRender, "ViewLayer.Combined"), (std::vector<int>{3, 4, 1}));
    EXPECT_EQ(coloursOf(kRender, "ViewLayer.Depth"), std::vector<int>{0});
    EXPECT_EQ(coloursOf(kRender, "ViewLayer.Depth.Z"), std::vector<int>{0});
    EXPECT_EQ(coloursOf(kRender, "ViewLayer.Normal"), (std::vector<int>{5, 6, 7}));
    EXPECT_EQ(coloursOf(kRender, "ViewLayer.Combined.A"), std::vector<int>{2});
    EXPECT_EQ(coloursOf(onePart({"R", "G", "B", "Z"}), "Z"), std::vector<int>{3});
    EXPECT_EQ(chooseChannels(kRender, "ViewLayer.Depth", "").colourName, "Z");
}

TEST(Layers, GreyWithAndWithoutAlpha) {
    const ChannelChoice choice = chooseChannels(onePart({"Y", "A"}), "", "grey.png");
    EXPECT_EQ(choice.colours, std::vector<int>{0});
    EXPECT_EQ(choice.alpha, 1);
    EXPECT_EQ(coloursOf(onePart({"Z"}), ""), std::vector<int>{0});
    EXPECT_EQ(coloursOf(onePart({"A"}), ""), std::vector<int>{0});
}

TEST(Layers, PartsOfOneNameStayApart) {
    const std::vector<ChannelPlace> parts{{"left.R", 0, 0},  {"left.G", 0, 1},  {"left.B", 0, 2},
                                          {"depth.Z", 1, 0}, {"right.R", 2, 0}, {"right.G", 2, 1},
                                          {"right.B", 2, 2}};
    EXPECT_EQ(chooseChannels(parts, "right", "").part, 2);
    EXPECT_EQ(chooseChannels(parts, "depth", "").part, 1);
    EXPECT_EQ(chooseChannels(parts, "", "").part, 0);
}

TEST(Layers, WhatIsMissingIsAnsweredWithTheNames) {
    const std::string missing = refusal(kRender, "Beauty");
    EXPECT_NE(missing.find("shot.exr has no layer or channel Beauty"), std::string::npos);
    EXPECT_NE(missing.find("ViewLayer.Combined, ViewLayer.Normal"), std::string::npos) << missing;
    EXPECT_NE(missing.find("ViewLayer.UV.V"), std::string::npos) << missing;
    EXPECT_NE(refusal(kRender, "ViewLayer.UV").find("neither grey nor colour"), std::string::npos);
    EXPECT_NE(refusal(onePart({"a.U", "a.V", "b.U", "b.V"}), "").find("name a layer"),
              std::string::npos);
}

}  // namespace
}  // namespace cli
