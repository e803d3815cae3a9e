#include "headless/Effect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace headless {
namespace {

// An effect that answers commands as `answer` says.
std::function<PF_Err(PF_Cmd, PF_InData&, PF_OutData&, void* extra)> answer;

PF_Err entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[], PF_LayerDef*,
             void* extra) {
    return answer(cmd, *in, *out, extra);
}

TEST(Effect, SetUpAndSetDownSendTheirCommandsInOrder) {
    std::vector<PF_Cmd> commands;
    PF_Handle global = nullptr;
    answer = [&](PF_Cmd cmd, PF_InData& in, PF_OutData& out, void*) {
        commands.push_back(cmd);
        if (cmd == PF_Cmd_GLOBAL_SETUP) out.global_data = global = in.utils->host_new_handle(8);
        if (cmd == PF_Cmd_PARAMS_SETUP) out.num_params = 1;
        if (cmd == PF_Cmd_GLOBAL_SETDOWN) {
            EXPECT_EQ(in.global_data, global);
            in.utils->host_dispose_handle(in.global_data);
        }
        return PF_Err_NONE;
    };
    Host host;
    Effect effect{host, entry};
    effect.setUp();
    EXPECT_EQ(effect.declaredParameters(), 1);
    EXPECT_TRUE(host.accounts().clean()) << "the global record is the host's now";
    effect.setDown();
    EXPECT_THAT(commands, testing::ElementsAre(PF_Cmd_GLOBAL_SETUP, PF_Cmd_PARAMS_SETUP,
                                               PF_Cmd_SEQUENCE_SETUP, PF_Cmd_SEQUENCE_SETDOWN,
                                               PF_Cmd_GLOBAL_SETDOWN));
    answer = [](PF_Cmd cmd, PF_InData&, PF_OutData&, void*) {
        return cmd == PF_Cmd_PARAMS_SETUP ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
    };
    EXPECT_THAT([&] { effect.setUp(); },
                testing::ThrowsMessage<EffectError>("PF_Cmd_PARAMS_SETUP failed with code 4"));
}

// What an effect forgets in its render command, damages, or asks for at the wrong time.
TEST(Effect, MisuseIsListedInTheAccounts) {
    const auto render = [](PF_InData& in, PF_SmartRenderCallbacks& cb) {
        PF_ParamDef def{};
        in.inter.checkout_param(in.effect_ref, 1, 0, 1, 1, &def);
        PF_EffectWorld* output = nullptr;
        cb.checkout_output(in.effect_ref, &output);
        static_cast<std::uint8_t*>(output->data)[output->width * 4] = 0;
        EXPECT_NE(cb.checkin_layer_pixels(in.effect_ref, 0), 0) << "never checked out";
        EXPECT_NE(in.inter.add_param(in.effect_ref, -1, &def), 0) << "at the wrong time";
        std::thread([&] {
            EXPECT_NE(in.inter.checkout_param(in.effect_ref, 1, 0, 1, 1, &def), 0);
        }).join();
    };
    answer = [&](PF_Cmd cmd, PF_InData& in, PF_OutData&, void* extra) {
        PF_ParamDef def{};
        def.param_type = PF_Param_SLIDER;
        if (cmd == PF_Cmd_PARAMS_SETUP) in.inter.add_param(in.effect_ref, -1, &def);
        if (cmd == PF_Cmd_SMART_PRE_RENDER) {
            auto& pre = *static_cast<PF_PreRenderExtra*>(extra);
            pre.output->result_rect = pre.input->output_request.rect;
        }
        if (cmd == PF_Cmd_SMART_RENDER) render(in, *static_cast<PF_SmartRenderExtra*>(extra)->cb);
        return PF_Err_NONE;
    };
    Host host;
    Effect effect{host, entry};
    effect.setUp();
    FrameRequest request;
    request.input = std::make_shared<World>(4, 3, PF_PixelFormat_ARGB32);
    effect.renderFrame(request);
    const Accounts accounts = host.accounts();
    EXPECT_TRUE(accounts.allGivenBackBut("1")) << accounts.describe();
    EXPECT_FALSE(accounts.allGivenBack());
    EXPECT_EQ(accounts.faults.size(), 4u) << accounts.describe();
}

}  // namespace
}  // namespace headless
