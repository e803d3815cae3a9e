#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/ToyEffect.h"
#include "platform/Suites.h"

namespace headless {
namespace {

PF_Err updateUi(PF_InData& in, int index, const PF_ParamDef* def) {
    const void* suite = nullptr;
    in.pica_basicP->AcquireSuite(kPFParamUtilsSuite, 3, &suite);
    const PF_Err err =
        static_cast<const PF_ParamUtilsSuite3*>(suite)->PF_UpdateParamUI(in.effect_ref, index, def);
    in.pica_basicP->ReleaseSuite(kPFParamUtilsSuite, 3);
    return err;
}

struct EffectTest : testing::Test {
    ToyEffect toy;
    Host host;
    Effect effect{host, ToyEffect::entry};
};

TEST_F(EffectTest, SetUpAndSetDownSendTheirCommandsInOrder) {
    std::vector<PF_Cmd> commands;
    PF_Handle global = nullptr;
    toy.onOther = [&](PF_Cmd cmd, PF_InData& in, PF_OutData& out, PF_ParamDef**) {
        commands.push_back(cmd);
        if (cmd == PF_Cmd_GLOBAL_SETUP) out.global_data = global = in.utils->host_new_handle(8);
        if (cmd == PF_Cmd_PARAMS_SETUP) out.num_params = 1;
        if (cmd == PF_Cmd_GLOBAL_SETDOWN) {
            EXPECT_EQ(in.global_data, global);
            in.utils->host_dispose_handle(in.global_data);
        }
        return PF_Err_NONE;
    };
    effect.setUp();
    EXPECT_EQ(effect.declaredParameters(), 1);
    EXPECT_TRUE(host.accounts().clean()) << "the global record is the host's now";
    effect.setDown();
    EXPECT_EQ(commands,
              (std::vector<PF_Cmd>{PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP, PF_Cmd_SEQUENCE_SETUP,
                                   PF_Cmd_SEQUENCE_SETDOWN, PF_Cmd_GLOBAL_SETDOWN}));
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(EffectTest, AFailedSetUpNamesTheCommand) {
    toy.onOther = [](PF_Cmd cmd, PF_InData&, PF_OutData&, PF_ParamDef**) {
        return cmd == PF_Cmd_PARAMS_SETUP ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
    };
    EXPECT_THAT([&] { effect.setUp(); },
                testing::ThrowsMessage<EffectError>("PF_Cmd_PARAMS_SETUP failed with code 4"));
}

TEST_F(EffectTest, UpdateParamsUiPassesValuesAndTakesTheDisabledState) {
    effect.setUp();
    effect.parameters().set("Amount", 33);
    toy.onOther = [](PF_Cmd, PF_InData& in, PF_OutData&, PF_ParamDef** params) {
        EXPECT_EQ(params[1]->u.sd.value, 33);
        params[1]->ui_flags |= PF_PUI_DISABLED;
        return updateUi(in, 1, params[1]);
    };
    EXPECT_EQ(effect.updateParamsUI(), PF_Err_NONE);
    EXPECT_TRUE(effect.parameters().disabled(1));
    EXPECT_FALSE(effect.parameters().disabled(2));

    effect.parameters().setLayer(2, std::make_shared<World>(2, 2, PF_PixelFormat_ARGB32));
    toy.onOther = [](PF_Cmd, PF_InData& in, PF_OutData&, PF_ParamDef** params) {
        EXPECT_NE(params[2]->u.ld.reserved0, nullptr);
        EXPECT_EQ(params[1]->ui_flags, PF_PUI_DISABLED);
        return updateUi(in, 99, params[1]);
    };
    EXPECT_EQ(effect.updateParamsUI(), PF_Err_INVALID_INDEX);
    toy.onOther = nullptr;
}

TEST_F(EffectTest, SequenceHandlesPassBothWays) {
    const PF_InData outside = host.makeInData();
    const PF_Handle given = outside.utils->host_new_handle(16);
    toy.onOther = [&](PF_Cmd, PF_InData& in, PF_OutData& out, PF_ParamDef**) {
        EXPECT_EQ(in.sequence_data, given);
        EXPECT_EQ(out.sequence_data, given);
        in.utils->host_dispose_handle(out.sequence_data);
        out.sequence_data = in.utils->host_new_handle(4);
        return PF_Err_NONE;
    };
    PF_Handle handle = given;
    EXPECT_EQ(effect.sendSequence(PF_Cmd_SEQUENCE_FLATTEN, given, handle), PF_Err_NONE);
    EXPECT_EQ(outside.utils->host_get_handle_size(handle), 4u);
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

}  // namespace
}  // namespace headless
