#include "effect/RenderInfo.h"

#include <cmath>
#include <utility>

#include "effect/EffectFixture.h"

namespace {

class RenderParameters : public EffectFixture {
protected:
    struct Read {
        explicit Read(PF_InData& in_data) : hostData(&in_data), info(hostData, PF_LayerDef{}) {
            err = info.extractParameters(&in_data);
        }
        AEO::InData hostData;
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

TEST_F(RenderParameters, ReadsEachValueIntoItsField) {
    const std::pair<const char*, double RenderInfo::*> fields[] = {
        {"Roundness", &RenderInfo::roundness},
        {"Concentration", &RenderInfo::concentration},
        {"Deform", &RenderInfo::deform},
        {"Rotation", &RenderInfo::rotation},
        {"Threshold", &RenderInfo::threshold},
        {"Focal Distance", &RenderInfo::focalDistance},
        {"Focus Point 0-1 Interpolation", &RenderInfo::focusInterpolation}};
    double value = 0.0;
    for (const auto& field : fields) parameters().set(field.first, value += 0.0625);
    parameters().set("Vertices", 9);
    parameters().set("Placement", 2);
    const Read read(in_data);
    EXPECT_EQ(read.err, 0);
    value = 0.0;
    for (const auto& [label, field] : fields) {
        EXPECT_EQ(read.info.*field, value += 0.0625) << label;
    }
    EXPECT_EQ(read.info.vertices, 9);
    EXPECT_EQ(read.info.placement, 2);
}

TEST_F(RenderParameters, TurnsValuesIntoRenderUnits) {
    auto& p = parameters();
    in_data.downsample_x = {1, 2};
    in_data.downsample_y = {1, 4};
    p.set("Edge Behavior", 0);
    p.set("Invert Depth Map", 1);
    p.set("Use Focus Point", 1);
    p.setPoint(p.find("Focus Point 0"), 10, -20);
    p.setPoint(p.find("Focus Point 1"), 30, 40);
    p.set("Profile", 0.5);
    p.set("Remove Edge Leak", 0.5);
    const Read read(in_data);
    const RenderInfo& info = read.info;
    EXPECT_EQ(info.radius, 10.25) << "(20 + 0.5) / 2, whatever the vertical factor";
    EXPECT_FALSE(info.repeatEdge);
    EXPECT_TRUE(info.invertDepth);
    EXPECT_EQ(info.useFocusPoint, 1.0);
    EXPECT_THAT(info.focusPoint0, testing::FieldsAre(10.0, -20.0));
    EXPECT_THAT(info.focusPoint1, testing::FieldsAre(30.0, 40.0));
    EXPECT_NEAR(info.profileSlope, std::tan(1.49995 * std::acos(-1) / 4), 1e-12);
    EXPECT_NEAR(info.edgeLeak, std::tan(0.2475 * std::acos(-1)), 1e-12);
    EXPECT_EQ(info.edgeThreshold, 0.0999908447265625);
}

TEST_F(RenderParameters, KeepsTheCurvesFiniteAtTheirEnds) {
    for (const double end : {-1.0, 0.0, 1.0}) {
        parameters().set("Profile", end);
        parameters().set("Remove Edge Leak", std::max(end, 0.0));
        const Read read(in_data);
        EXPECT_GT(read.info.profileSlope, end > 0 ? 1e4 : 0);
        EXPECT_LT(read.info.profileSlope, end < 0 ? 1e-4 : end > 0 ? 2e4 : 1 + 1e-12);
        EXPECT_EQ(read.info.edgeLeak > 0, end > 0);
        EXPECT_LT(read.info.edgeLeak, 64);
    }
}

TEST_F(RenderParameters, TruncatesThePixelAspect) {
    const std::pair<PF_RationalScale, double> cases[] = {
        {{1, 1}, 1.0}, {{4, 3}, 1.0}, {{3, 2}, 1.0}, {{2, 1}, 2.0}, {{10, 11}, 0.0}};
    for (const auto& [ratio, expected] : cases) {
        in_data.pixel_aspect_ratio = ratio;
        EXPECT_EQ(Read(in_data).info.pixelAspect, expected) << ratio.num << '/' << ratio.den;
    }
}

TEST_F(RenderParameters, ReadsTheShapesChannelOnlyWithAShape) {
    parameters().set("Custom Layer Channel", 2);
    const std::size_t plain = reads().size();
    EXPECT_EQ(Read(in_data).info.customChannel, 4) << "alpha, whatever the popup shows";
    parameters().setLayer(parameters().find("Custom Blur Shape"),
                          std::make_shared<headless::World>(4, 4, PF_PixelFormat_ARGB32));
    const Calls shaped = reads();
    EXPECT_EQ(shaped.size(), plain + 1);
    EXPECT_EQ(shaped.at(7), "8") << "after the shape";
    EXPECT_EQ(Read(in_data).info.customChannel, 2);
}

TEST_F(RenderParameters, ReadsOnAfterAFailureAndKeepsTheFirst) {
    const std::size_t all = reads().size();
    failCheckin(in_data, 3, 513);
    EXPECT_EQ(reads().size(), all);
    EXPECT_EQ(err, 513);
}

}  // namespace
