// SPDX-License-Identifier: Apache-2.0
#include "effect/RenderInfo.h"

#include <array>
#include <cmath>
#include <utility>

#include "support/EffectFixture.h"

namespace {

class RenderParameters : public EffectFixture {
protected:
    struct Read {
        explicit Read(PF_InData& in_data) : context(&in_data), info(context, PF_LayerDef{}) {
            err = info.extractParameters(&in_data);
        }
        AEO::InData context;
        RenderInfo info;
        int err;
    };

    // Parameters in the order of their check-outs; the two of one read count once.
    Calls reads() {
        Calls order = argumentsOf(callsOf([&] { err = Read(in_data).err; }), "checkout_param ");
        order.erase(std::unique(order.begin(), order.end()), order.end());
        return order;
    }

    int err = 0;
};

TEST_F(RenderParameters, TurnsValuesIntoRenderUnits) {
    auto& p = parameters();
    in_data.downsample_x = {1, 2};
    in_data.downsample_y = {1, 4};
    const std::pair<const char*, double> values[] = {
        {"Vertices", 9},           {"Roundness", 0.0625},
        {"Concentration", 0.125},  {"Deform", 0.1875},
        {"Rotation", 0.25},        {"Threshold", 0.3125},
        {"Edge Behavior", 0},      {"Placement", 2},
        {"Focal Distance", 0.375}, {"Use Focus Point", 1},
        {"Invert Depth Map", 1},   {"Focus Point 0-1 Interpolation", 0.4375},
        {"Profile", 0.5},          {"Remove Edge Leak", 0.5},
        {"Resolution", 7}};
    for (const auto& [label, value] : values) p.set(label, value);
    p.setPoint(p.find("Focus Point 0"), 10, -20);
    p.setPoint(p.find("Focus Point 1"), 30, 40);
    const Read read(in_data);
    EXPECT_EQ(read.err, 0);
    const RenderInfo& info = read.info;
    EXPECT_EQ(info.inData, &in_data);
    EXPECT_EQ(info.radius, 10.25) << "(20 + 0.5) / 2, whatever the vertical factor";
    EXPECT_EQ(info.vertices, 9);
    EXPECT_EQ(info.placement, 2);
    EXPECT_EQ(info.layerCount, 7);
    EXPECT_THAT((std::array{info.roundness, info.concentration, info.deform, info.rotation,
                            info.threshold, info.focalDistance, info.focusInterpolation}),
                testing::ElementsAre(0.0625, 0.125, 0.1875, 0.25, 0.3125, 0.375, 0.4375));
    EXPECT_FALSE(info.repeatEdge);
    EXPECT_TRUE(info.invertDepth);
    EXPECT_EQ(info.useFocusPoint, 1.0);
    EXPECT_THAT(info.focusPoint0, testing::FieldsAre(10.0, -20.0));
    EXPECT_THAT(info.focusPoint1, testing::FieldsAre(30.0, 40.0));
    EXPECT_NEAR(info.profileSlope, std::tan(1.49995 * std::acos(-1) / 4), 1e-12);
    EXPECT_NEAR(info.edgeLeak, std::tan(0.2475 * std::acos(-1)), 1e-12);
    EXPECT_EQ(info.edgeThreshold, 0.0999908447265625);
    EXPECT_EQ(info.profileOffset, 0.0);
}

TEST_F(RenderParameters, TruncatesThePixelAspect) {
    const std::pair<PF_RationalScale, double> cases[] = {
        {{1, 1}, 1.0}, {{4, 3}, 1.0}, {{3, 2}, 1.0}, {{2, 1}, 2.0}, {{10, 11}, 0.0}};
    for (const auto& [ratio, expected] : cases) {
        in_data.pixel_aspect_ratio = ratio;
        EXPECT_EQ(Read(in_data).info.pixelAspect, expected) << ratio.num << '/' << ratio.den;
    }
}

TEST_F(RenderParameters, ReadsInOneOrderAndTheShapesChannelOnlyWithAShape) {
    parameters().set("Custom Layer Channel", 2);
    const char* const rest[] = {"9",  "10", "11", "15", "14", "24", "16", "23",
                                "17", "18", "19", "20", "21", "22", "25", "26"};
    Calls order{"1", "2", "3", "4", "5", "6", "7"};
    order.insert(order.end(), std::begin(rest), std::end(rest));
    EXPECT_EQ(reads(), order);
    EXPECT_EQ(Read(in_data).info.customChannel, 4) << "alpha, whatever the popup shows";
    parameters().setLayer(parameters().find("Custom Blur Shape"),
                          std::make_shared<headless::World>(4, 4, PF_PixelFormat_ARGB32));
    order.insert(order.begin() + 7, "8");
    EXPECT_EQ(reads(), order);
    EXPECT_EQ(Read(in_data).info.customChannel, 2);

    // A failed read doesn't stop the others, and the first code is kept.
    failCheckin(in_data, 3, 513);
    EXPECT_EQ(reads(), order);
    EXPECT_EQ(err, 513);
}

}  // namespace
