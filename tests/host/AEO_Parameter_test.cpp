// SPDX-License-Identifier: Apache-2.0
#include "host/AEO_Parameter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

using AEO::Parameter;
using testing::ElementsAre;

constexpr int kIndex = 5;
constexpr PF_Err kError = 513;

// Answers check-outs with one definition and records the calls. Sliders get the time as value.
std::vector<std::string> calls;
PF_ParamDef def;
PF_Err checkinResult;

class ParameterAccess : public testing::Test {
protected:
    ParameterAccess() {
        calls.clear();
        checkinResult = PF_Err_NONE;
        in_data.current_time = 40;
        in_data.time_step = 2;
        in_data.time_scale = 25;
        in_data.inter.checkout_param = [](PF_ProgPtr, PF_ParamIndex index, std::int32_t time,
                                          std::int32_t step, std::uint32_t scale,
                                          PF_ParamDef* param) -> PF_Err {
            std::ostringstream call;
            call << "out " << index << " at " << time << '+' << step << '/' << scale;
            calls.push_back(call.str());
            *param = def;
            if (def.param_type == PF_Param_SLIDER) param->u.sd.value = time;
            return PF_Err_NONE;
        };
        in_data.inter.checkin_param = [](PF_ProgPtr, PF_ParamDef*) {
            calls.push_back("in");
            return checkinResult;
        };
        define(PF_Param_SLIDER);
    }
    static PF_ParamDefUnion& define(PF_ParamType type) {
        def = {};
        def.param_type = type;
        return def.u;
    }

    PF_InData in_data{};
    int err = 0;
};
using ParameterAccessDeathTest = ParameterAccess;

constexpr const char* kOutNow = "out 5 at 40+2/25";

TEST_F(ParameterAccess, ChecksOutForTheTypeAndForEachValue) {
    {
        Parameter parameter(&in_data, kIndex);
        EXPECT_EQ(parameter.slider({7, 30}), 7);
        EXPECT_EQ(parameter.slider({8, 30}), 8);
        EXPECT_EQ(parameter.slider(), 40);
        Parameter unused(&in_data, kIndex);
    }
    EXPECT_THAT(calls, ElementsAre(kOutNow, "in", "out 5 at 7+2/30", "in", "out 5 at 8+2/30", "in",
                                   kOutNow, "in"));
}

// What the effect's own reads don't cover.
TEST_F(ParameterAccess, ConvertsEachType) {
    define(PF_Param_CHECKBOX).bd.value = 0x100;
    EXPECT_EQ(Parameter::CheckBox(&in_data, kIndex, err), 0);
    def.u.bd.value = 0x7F01;
    EXPECT_EQ(Parameter::CheckBox(&in_data, kIndex, {1, 1}, err), 1);
    define(PF_Param_COLOR).cd.value = {1, 2, 3, 4};
    EXPECT_EQ(Parameter::Color(&in_data, kIndex, err).green, 3);
    define(PF_Param_FLOAT_SLIDER).fs_d.value = 2.5;
    EXPECT_EQ(Parameter::Float(&in_data, kIndex, err), 2.5);
    EXPECT_EQ(err, 0);
}

TEST_F(ParameterAccess, AnErrorStopsCallsToTheHost) {
    Parameter parameter(&in_data, kIndex);
    parameter.slider();
    calls.clear();
    checkinResult = kError;
    EXPECT_EQ(parameter.slider({3, 10}), 40) << "the copy from the last check-out";
    EXPECT_EQ(parameter.slider({4, 10}), 40);
    EXPECT_THAT(calls, ElementsAre("in"));
    parameter._err = PF_Interrupt_CANCEL;  // with a cancel the destructor makes no call either
}

TEST_F(ParameterAccess, StaticReadPassesTheFirstErrorOn) {
    // The first check-out reads the type; the check-in before the second fails.
    in_data.inter.checkin_param = [](PF_ProgPtr, PF_ParamDef*) -> PF_Err {
        calls.push_back("in");
        return calls.size() == 2 ? kError : PF_Err_NONE;
    };
    EXPECT_EQ(Parameter::Slider(&in_data, kIndex, err), 40);
    EXPECT_EQ(err, kError);
    EXPECT_THAT(calls, ElementsAre(kOutNow, "in", "in")) << "without the error it checks in";

    Parameter::Slider(&in_data, kIndex, err);
    EXPECT_EQ(err, kError) << "the first error stays";
}

TEST_F(ParameterAccessDeathTest, StaticReadBehindAnErrorEndsWithItsOwn) {
    checkinResult = kError;
    err = PF_Err_OUT_OF_MEMORY;
    EXPECT_DEATH(Parameter::Slider(&in_data, kIndex, err),
                 "^AEO_Base:49: ~ObjectBase: Assertion `_err == PF_Err_NONE \\|\\| _err == "
                 "PF_Interrupt_CANCEL' failed\\.\n$");
}

TEST_F(ParameterAccessDeathTest, AccessorsInsistOnTheirType) {
    using Access = void (*)(Parameter&);
    const std::tuple<PF_ParamType, Access, const char*> cases[] = {
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.slider(); }, "slider: .*\\) == kSlider"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.angle(); }, "angle: .*\\)==kAngle"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.layer(); }, "layer: .*\\) == kLayer"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.checkBox(); }, "checkBox: .*\\) == kCheckBox"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.color(); }, "color: .*\\) == kColor"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.point(); }, "point: .*\\) == kPoint"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.popup(); }, "popup: .*\\)==kPopup"},
        {PF_Param_FIX_SLIDER, [](Parameter& p) { p.floatSlider(); },
         "floatSlider: .*\\)==kFloatSlider"},
        {PF_Param_SLIDER, [](Parameter& p) { p.fixed(); }, "fixed: .*\\)==kFixSlider"}};
    for (const auto& [type, access, text] : cases) {
        define(type);
        Parameter parameter(&in_data, kIndex);
        EXPECT_DEATH(access(parameter), std::string("^AEO_Parameter:[0-9]+: ") + text);
    }
}

}  // namespace
