#include "headless/Parameters.h"

#include <gtest/gtest.h>

#include <cstring>

#include "headless/Host.h"

namespace headless {
namespace {

PF_ParamDef define(PF_ParamType type, const char* label) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strcpy(def.name, label);
    return def;
}

// 1 number, 2 point, 3 layer
ParameterSet makeSet() {
    ParameterSet set;
    PF_ParamDef number = define(PF_Param_FIX_SLIDER, "Number");
    number.u.fd.valid_min = -65536;
    number.u.fd.valid_max = 65536;
    set.declare(number);
    set.declare(define(PF_Param_POINT, "Point"));
    set.declare(define(PF_Param_LAYER, "Layer"));
    return set;
}

const Geometry kHalf{1000, 400, {1, 2}, {1, 4}};

TEST(Parameters, PointsAreInPixelsOfTheDownsample) {
    ParameterSet set = makeSet();
    const auto expectPoint = [&](int x, int y) {
        const PF_PointDef point = set.evaluate(2, {0, 1}, kHalf).u.td;
        EXPECT_EQ(std::pair(point.x_value, point.y_value), std::pair(x, y));
    };
    set.setPoint(2, -11, 3);
    expectPoint(-11 * 32768, 3 * 16384);
    set.setPointPercent(2, 110, 25);
    expectPoint(550 * 65536, 25 * 65536);
}

TEST(Parameters, KeysAreJoinedByStraightLines) {
    ParameterSet set = makeSet();
    set.setKeys(1, {{{10, 10}, -0.5, 0}, {{3, 1}, 0.5, 0}, {{4, 1}, 0, 0}});
    EXPECT_DOUBLE_EQ(set.value(1, {0, 1}), -0.5);
    EXPECT_DOUBLE_EQ(set.value(1, {3, 2}), -0.25);
    EXPECT_DOUBLE_EQ(set.value(1, {9, 1}), 0);
    set.setKeys(2, {{{0, 1}, 0, 100}, {{10, 1}, 100, 0}});
    EXPECT_EQ(set.evaluate(2, {5, 1}, kHalf).u.td.x_value, 25 * 65536);
}

TEST(Parameters, CheckedOutLayersComeWholeAtTheDownsampleAndMisuseIsAFault) {
    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    host.parameters() = makeSet();
    host.setGeometry(kHalf);
    PF_InData in = host.makeInData();
    PF_ParamDef def{};
    const auto checkout = [&](int index) {
        return in.inter.checkout_param(in.effect_ref, index, 0, 1, 1, &def);
    };
    const auto checkin = [&] { return in.inter.checkin_param(in.effect_ref, &def); };
    auto map = std::make_shared<World>(301, 101, PF_PixelFormat_ARGB64);
    map->fill({1, 0.25F, 0.5F, 1});
    host.parameters().setLayer(3, map);
    ASSERT_EQ(checkout(3), PF_Err_NONE);
    EXPECT_EQ(std::pair(def.u.ld.width, def.u.ld.height), std::pair(151, 26));
    EXPECT_EQ(World::formatOf(def.u.ld), PF_PixelFormat_ARGB64);
    EXPECT_EQ(static_cast<PF_Pixel16*>(def.u.ld.data)[150].red, 8192);
    EXPECT_EQ(host.accounts().outstanding.at(0).name, "3 Layer");
    EXPECT_EQ(checkin(), PF_Err_NONE);
    EXPECT_EQ(World::formatOf(def.u.ld), PF_PixelFormat_INVALID) << "pixels go with the check-in";

    EXPECT_EQ(checkout(5), PF_Err_INVALID_INDEX);
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
    EXPECT_NE(checkin(), PF_Err_NONE);
    EXPECT_EQ(host.accounts().faults.size(), 1u);
    checkout(1);
    checkout(2);
    EXPECT_EQ(host.accounts().faults.size(), 2u) << "a record that held another check-out";
}

}  // namespace
}  // namespace headless
