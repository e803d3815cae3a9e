// SPDX-License-Identifier: Apache-2.0
#include "headless/Effect.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <thread>

namespace headless {
namespace {

// An effect that passes its commands to `answer`.
std::function<PF_Err(PF_Cmd, PF_InData&, PF_OutData&, void* extra)> answer;

PF_Err entry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[], PF_LayerDef*,
             void* extra) {
    return answer(cmd, *in, *out, extra);
}

TEST(Effect, CommandsHaveTheInterfacesNames) {
    EXPECT_EQ(commandName(PF_Cmd_ABOUT), "PF_Cmd_ABOUT");
    EXPECT_EQ(commandName(PF_Cmd_UPDATE_PARAMS_UI), "PF_Cmd_UPDATE_PARAMS_UI");
    EXPECT_EQ(commandName(PF_Cmd_SMART_RENDER), "PF_Cmd_SMART_RENDER");
    EXPECT_EQ(commandName(PF_Cmd_RESERVED2), "PF_Cmd_RESERVED2");
    EXPECT_EQ(commandName(PF_Cmd_NUM_CMDS), "command 27");
    EXPECT_EQ(commandName(-1), "command -1");
}

// What an effect forgets in its render command, damages, or requests at the wrong time.
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
