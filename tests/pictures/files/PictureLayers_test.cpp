// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureLayers.h"

#include <gmock/gmock.h>

#include "support/TestFiles.h"

namespace pictures {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<ChannelPlace> onePart(const std::vector<std::string>& names) {
    std::vector<ChannelPlace> channels;
    for (const std::string& name : names) {
        channels.push_back({name, 0, static_cast<int>(channels.size())});
    }
    return channels;
}

// A multi-layer file as renderers write it; no channel is outside a layer.
const std::vector<ChannelPlace> kRender =
    onePart({"ViewLayer.Depth.Z", "ViewLayer.Combined.B", "ViewLayer.Combined.A",
             "ViewLayer.Combined.R", "ViewLayer.Combined.G", "ViewLayer.Normal.X",
             "ViewLayer.Normal.Y", "ViewLayer.Normal.Z", "ViewLayer.UV.U", "ViewLayer.UV.V"});

std::vector<int> coloursOf(const std::vector<ChannelPlace>& channels, const std::string& wanted) {
    return chooseChannels(channels, wanted, "shot.exr").colours;
}

TEST(Layers, ColoursOutsideAnyLayerComeFirstThenTheFirstLayerInColour) {
    const auto channels = onePart({"Combined.R", "Combined.G", "Combined.B", "B", "G", "R", "A"});
    const ChannelChoice outside = chooseChannels(channels, "", "");
    EXPECT_THAT(outside.colours, ElementsAre(5, 4, 3));
    EXPECT_EQ(outside.alpha, 6);
    EXPECT_THAT(outside.leftOut, ElementsAre("Combined"));
    const ChannelChoice first = chooseChannels(kRender, "", "");
    EXPECT_THAT(first.colours, ElementsAre(3, 4, 1));
    EXPECT_EQ(first.alpha, 2);
    EXPECT_THAT(first.leftOut, ElementsAre("ViewLayer.Depth", "ViewLayer.Normal", "ViewLayer.UV"));
    const ChannelChoice grey = chooseChannels(onePart({"Y", "A"}), "", "");
    EXPECT_THAT(grey.colours, ElementsAre(0));
    EXPECT_EQ(grey.alpha, 1);
    EXPECT_THAT(coloursOf(onePart({"A"}), ""), ElementsAre(0));
}

TEST(Layers, LayersChannelsAndPartsByName) {
    EXPECT_THAT(coloursOf(kRender, "ViewLayer.Normal"), ElementsAre(5, 6, 7));
    EXPECT_THAT(coloursOf(kRender, "ViewLayer.Combined.A"), ElementsAre(2));
    const std::vector<ChannelPlace> parts{
        {"left.R", 0, 0}, {"left.G", 0, 1}, {"left.B", 0, 2}, {"depth.Z", 1, 0}};
    EXPECT_EQ(chooseChannels(parts, "depth", "").part, 1);
}

TEST(Layers, WhatIsMissingIsAnsweredWithTheNames) {
    EXPECT_THAT(test::refusalOf([&] { coloursOf(kRender, "Beauty"); }),
                AllOf(HasSubstr("shot.exr has no layer or channel Beauty"),
                      HasSubstr("ViewLayer.Combined, ViewLayer.Normal")));
    EXPECT_THROW(coloursOf(kRender, "ViewLayer.UV"), std::exception) << "neither grey nor colour";
}

}  // namespace
}  // namespace pictures
