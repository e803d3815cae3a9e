// SPDX-License-Identifier: Apache-2.0
#include <stdexcept>

#include "support/EffectFixture.h"

namespace {

class EntryPoint : public EffectFixture {};

TEST_F(EntryPoint, LeavesCommandsWithoutHandlerAlone) {
    for (const PF_Cmd command : {2, 9, 10, 12, 15, 16, 17, 18, 19, 20, 21, 22, 25, 26, 27, -1}) {
        EXPECT_EQ(EntryPointFunc(command, nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    }
}

TEST_F(EntryPoint, ReturnsAThrownIntAndLetsOthersPass) {
    in_data.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDef*) -> PF_Err { throw 517; };
    EXPECT_EQ(send(PF_Cmd_PARAMS_SETUP), 517);
    in_data.inter.add_param = [](PF_ProgPtr, PF_ParamIndex, PF_ParamDef*) -> PF_Err {
        throw std::runtime_error("not a host code");
    };
    EXPECT_THROW(send(PF_Cmd_PARAMS_SETUP), std::runtime_error);
}

TEST_F(EntryPoint, UnwindsAHandlerThatMissesASuite) {
    host.failures().failSuite(kAEGPUtilitySuite);
    const Calls calls = callsOf([&] { EXPECT_EQ(send(PF_Cmd_GLOBAL_SETUP), 516); });
    EXPECT_THAT(argumentsOf(calls, "ReleaseSuite "),
                testing::ElementsAre("PF SamplingFloat Suite 1", "PF Sampling16 Suite 1",
                                     "PF Sampling8 Suite 1"));
}

}  // namespace
