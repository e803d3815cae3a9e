#include "headless/Parameters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "headless/Host.h"

namespace headless {
namespace {

PF_ParamDef define(PF_ParamType type, const char* label, PF_ParamFlags flags = 0) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strcpy(def.name, label);
    def.flags = flags;
    return def;
}

// 1 radius, 2 count, 3 turn, 4 box, 5 group, 6 Layer, 7 mode, 8 point, 9 group's end, 10 Layer
ParameterSet makeSet() {
    ParameterSet set;
    PF_ParamDef radius = define(PF_Param_FIX_SLIDER, "Radius");
    radius.u.fd.valid_min = -64880;
    radius.u.fd.valid_max = 64880;
    radius.u.fd.dephault = 6553;
    radius.u.fd.precision = 2;
    set.declare(radius);
    PF_ParamDef count = define(PF_Param_SLIDER, "Count");
    count.u.sd.valid_min = 3;
    count.u.sd.valid_max = 10;
    count.u.sd.dephault = 6;
    set.declare(count);
    set.declare(define(PF_Param_ANGLE, "Turn"));
    PF_ParamDef box = define(PF_Param_CHECKBOX, "Box", PF_ParamFlag_CANNOT_TIME_VARY);
    std::string boxText = "Do it";
    box.u.bd.dephault = 1;
    box.u.bd.u.nameptr = boxText.c_str();
    set.declare(box);
    boxText.assign("other");
    set.declare(define(PF_Param_GROUP_START, "Map"));
    set.declare(define(PF_Param_LAYER, "Layer"));
    PF_ParamDef mode = define(PF_Param_POPUP, "Mode");
    mode.u.pd.num_choices = 2;
    mode.u.pd.dephault = 2;
    mode.u.pd.u.namesptr = "Normal|Split";
    set.declare(mode);
    PF_ParamDef point = define(PF_Param_POINT, "Point");
    point.u.td.x_dephault = 50 * 65536;
    point.u.td.y_dephault = 25 * 65536;
    set.declare(point);
    set.declare(define(PF_Param_GROUP_END, ""));
    set.declare(define(PF_Param_LAYER, "Layer"));
    return set;
}

const Geometry kHalf{1000, 400, {1, 2}, {1, 4}};

TEST(Parameters, DefinitionsAreCopiedAndDescribed) {
    const ParameterSet set = makeSet();
    EXPECT_EQ(set.info(4).boxText, "Do it");
    EXPECT_EQ(set.info(7).choices, (std::vector<std::string>{"Normal", "Split"}));
    EXPECT_EQ(set.info(7).group, "Map");
    EXPECT_EQ(set.info(1).rangeText(), "-0.99 to 0.99");
    EXPECT_EQ(set.info(1).defaultValue, 6553 / 65536.0);
    EXPECT_EQ(set.evaluate(1, {0, 1}, kHalf).u.fd.value, 6553) << "defaults pass unrounded";
    ParameterSet other;
    EXPECT_FALSE(other.declare(define(99, "Unknown")));
}

TEST(Parameters, AreFoundByLabelAndGroup) {
    const ParameterSet set = makeSet();
    EXPECT_EQ(set.find("radius"), 1);
    EXPECT_EQ(set.find("map/LAYER"), 6);
    EXPECT_EQ(set.find("/Layer"), 10);
    EXPECT_THROW(set.find("Layer"), ParameterError);
    EXPECT_THROW(set.find("Map"), ParameterError) << "a group has no value";
}

TEST(Parameters, ValuesOutsideTypeOrRangeAreRefused) {
    ParameterSet set = makeSet();
    EXPECT_NO_THROW(set.set(1, 0.99)) << "the limit as the user knows it";
    EXPECT_EQ(set.evaluate(1, {0, 1}, kHalf).u.fd.value, 64880);
    EXPECT_THROW(set.set(1, 0.9902), ParameterError);
    EXPECT_THROW(set.set(1, NAN), ParameterError);
    EXPECT_THROW(set.set(2, 4.5), ParameterError);
    EXPECT_THROW(set.set(4, 2), ParameterError);
    EXPECT_THROW(set.set(5, 1), ParameterError);
    EXPECT_THROW(set.set(7, 3), ParameterError);
    EXPECT_THROW(set.setLayer(0, nullptr), ParameterError);
    EXPECT_THROW(set.setChoice(7, "Other"), ParameterError);
    set.setChoice(7, "normal");
    EXPECT_EQ(set.value(7), 1);
    EXPECT_THAT([&] { set.set(2, 11); },
                testing::ThrowsMessage<ParameterError>("Count: 11 is outside 3 to 10"));
    EXPECT_EQ(set.value(2), 6) << "a refused value leaves the old one";
}

TEST(Parameters, PointsAreInPixelsOfTheDownsample) {
    ParameterSet set = makeSet();
    const auto point = [&] { return set.evaluate(8, {0, 1}, kHalf).u.td; };
    EXPECT_EQ(point().x_value, 250 * 65536);
    EXPECT_EQ(point().y_value, 25 * 65536);
    set.setPoint(8, -11, 3);
    EXPECT_EQ(point().x_value, -11 * 32768);
    EXPECT_EQ(point().y_value, 3 * 16384);
    set.setPointPercent(8, 110, 0);
    EXPECT_EQ(point().x_value, 550 * 65536);
    set.setPoint(8, 1e9, 0);
    EXPECT_EQ(point().x_value, INT32_MAX);
}

TEST(Parameters, KeysAreJoinedByStraightLines) {
    ParameterSet set = makeSet();
    set.setKeys(1, {{{10, 10}, -0.5, 0}, {{3, 1}, 0.5, 0}, {{4, 1}, 0, 0}});
    EXPECT_DOUBLE_EQ(set.value(1, {0, 1}), -0.5);
    EXPECT_DOUBLE_EQ(set.value(1, {3, 2}), -0.25);
    EXPECT_DOUBLE_EQ(set.value(1, {30, 10}), 0.5);
    EXPECT_DOUBLE_EQ(set.value(1, {9, 1}), 0);
    EXPECT_EQ(set.evaluate(1, {5, 2}, kHalf).u.fd.value, 16384);
    set.setKeys(8, {{{0, 1}, 0, 100}, {{10, 1}, 100, 0}});
    EXPECT_EQ(set.evaluate(8, {5, 1}, kHalf).u.td.x_value, 25 * 65536);
    EXPECT_EQ(set.evaluate(8, {5, 1}, kHalf).u.td.y_value, (50 * 65536) / 4);

    EXPECT_THROW(set.setKeys(4, {{{0, 1}, 0, 0}, {{1, 1}, 1, 0}}), ParameterError);
    EXPECT_THROW(set.setKeys(1, {{{1, 1}, 0, 0}, {{1, 1}, 0.1, 0}}), ParameterError);
    EXPECT_THROW(set.setKeys(1, {{{0, 1}, 0, 0}, {{1, 1}, 5, 0}}), ParameterError);
    EXPECT_THROW(set.setKeys(1, {}), ParameterError);
}

class CheckOutTest : public testing::Test {
protected:
    CheckOutTest() {
        host.parameters() = makeSet();
        host.setGeometry(kHalf);
        in = host.makeInData();
    }
    PF_Err checkout(int index) {
        return in.inter.checkout_param(in.effect_ref, index, 0, 1, 1, &def);
    }
    PF_Err checkin() { return in.inter.checkin_param(in.effect_ref, &def); }

    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    PF_InData in{};
    PF_ParamDef def{};
};

TEST_F(CheckOutTest, LayersComeWholeAtTheDownsampleInTheirOwnFormat) {
    ASSERT_EQ(checkout(6), PF_Err_NONE);
    const PF_LayerDef zeros{};
    EXPECT_EQ(std::memcmp(&def.u.ld, &zeros, sizeof zeros), 0) << "none";
    checkin();

    auto map = std::make_shared<World>(301, 101, PF_PixelFormat_ARGB64);
    map->fill({1, 0.25F, 0.5F, 1});
    host.parameters().setLayer(6, map);
    ASSERT_EQ(checkout(6), PF_Err_NONE);
    EXPECT_NE(def.u.ld.reserved0, nullptr);
    EXPECT_EQ(def.u.ld.width, 151);
    EXPECT_EQ(def.u.ld.height, 26);
    EXPECT_EQ(World::formatOf(def.u.ld), PF_PixelFormat_ARGB64);
    EXPECT_EQ(static_cast<PF_Pixel16*>(def.u.ld.data)[150].red, 8192);
    EXPECT_EQ(host.accounts().outstanding.at(0).name, "6 Layer");
    EXPECT_EQ(checkin(), PF_Err_NONE);
    EXPECT_EQ(World::formatOf(def.u.ld), PF_PixelFormat_INVALID) << "pixels go with the check-in";
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(CheckOutTest, BadCallsGiveCodesAndFaults) {
    EXPECT_EQ(checkout(11), PF_Err_INVALID_INDEX);
    EXPECT_EQ(checkout(-1), PF_Err_INVALID_INDEX);
    EXPECT_TRUE(host.accounts().clean());
    EXPECT_NE(checkin(), PF_Err_NONE);
    EXPECT_EQ(host.accounts().faults.size(), 1u);
    checkout(1);
    checkout(2);
    EXPECT_EQ(host.accounts().faults.size(), 2u) << "a record that held another check-out";
    checkin();
    EXPECT_TRUE(host.accounts().allGivenBack());
}

}  // namespace
}  // namespace headless
