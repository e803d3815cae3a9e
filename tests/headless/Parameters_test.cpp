// SPDX-License-Identifier: Apache-2.0
#include "headless/Parameters.h"

#include <gtest/gtest.h>

#include <cstring>

namespace headless {
namespace {

PF_ParamDef define(PF_ParamType type, const char* label) {
    PF_ParamDef def{};
    def.param_type = type;
    std::strncpy(def.name, label, sizeof def.name - 1);
    return def;
}

// 1 number, 2 point
ParameterSet makeSet() {
    ParameterSet set;
    PF_ParamDef number = define(PF_Param_FIX_SLIDER, "Number");
    number.u.fd.valid_min = -65536;
    number.u.fd.valid_max = 65536;
    set.declare(number);
    set.declare(define(PF_Param_POINT, "Point"));
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

TEST(Parameters, KeysHoldEaseAndScale) {
    ParameterSet set = makeSet();
    set.setKeys(1, {{{0, 1}, 0.5, 0, Interpolation::kSmooth},
                    {{4, 1}, -0.5, 0, Interpolation::kHold},
                    {{8, 1}, 1, 0}});
    for (int frame = 0; frame < 4; ++frame) {
        const double t = frame / 4.0;
        EXPECT_DOUBLE_EQ(set.value(1, {frame, 1}), 0.5 - t * t * (3 - 2 * t));
    }
    EXPECT_DOUBLE_EQ(set.value(1, {7, 1}), -0.5);
    EXPECT_DOUBLE_EQ(set.value(1, {8, 1}), 1);
    set.changeValues(1, [](double value) { return value / 2; });
    EXPECT_DOUBLE_EQ(set.value(1, {2, 1}), 0);
    EXPECT_DOUBLE_EQ(set.value(1, {9, 1}), 0.5);
    EXPECT_THROW(set.changeValues(1, [](double value) { return value + 1; }), ParameterError);
    set.setKeysPercent(2, {{{0, 1}, 0, 100}, {{10, 1}, 100, 0}});
    EXPECT_EQ(set.evaluate(2, {5, 1}, kHalf).u.td.y_value, 50 * 65536);
    EXPECT_TRUE(set.inPercent(2));

    PF_ParamDef whole = define(PF_Param_SLIDER, "Whole");
    whole.u.sd.valid_max = 10;
    set.declare(whole);
    set.setKeys(3, {{{0, 1}, 2, 0}, {{10, 1}, 9, 0}});
    EXPECT_EQ(set.evaluate(3, {9, 1}, kHalf).u.sd.value, 2);
}

}  // namespace
}  // namespace headless
