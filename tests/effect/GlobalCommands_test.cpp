// SPDX-License-Identifier: Apache-2.0
#include "effect/GlobalCommands.h"

#include "effect/HandleBlock.h"
#include "support/EffectFixture.h"

namespace {

using testing::IsEmpty;

class GlobalCommands : public EffectFixture {
protected:
    // Sends the setdown with what the setup left.
    PF_Err setDown() {
        in_data.global_data = out_data.global_data;
        return send(PF_Cmd_GLOBAL_SETDOWN);
    }
    const GlobalData& kept() const {
        return *handle_block::object<GlobalData>(*out_data.global_data);
    }
};

TEST_F(GlobalCommands, SetupLeavesALockedRecordThatSetdownFrees) {
    const Calls calls = callsOf([&] { EXPECT_EQ(send(PF_Cmd_GLOBAL_SETUP), 0); });
    EXPECT_EQ(calls,
              withinSampling({"AcquireSuite AEGP Utility Suite 11", "AEGP_RegisterWithAEGP Orbel",
                              "ReleaseSuite AEGP Utility Suite 11", "host_new_handle 24",
                              "host_get_handle_size", "host_lock_handle"}));
    EXPECT_EQ(out_data.my_version, 655361u);
    EXPECT_EQ(out_data.out_flags, 0x6000001);
    EXPECT_EQ(out_data.out_flags2, 0x8001480);
    ASSERT_NE(out_data.global_data, nullptr);
    EXPECT_EQ(handleBefore(&kept()), out_data.global_data);
    EXPECT_EQ(kept().error, 0);
    EXPECT_NE(g_PluginID, 0);
    EXPECT_EQ(kept().pluginId, g_PluginID);
    EXPECT_EQ(callsOf([&] { EXPECT_EQ(setDown(), 0); }),
              withinSampling({"host_lock_handle", "host_unlock_handle", "host_dispose_handle"}));
}

TEST_F(GlobalCommands, WithoutARecordNothingIsAsked) {
    EXPECT_THAT(callsOf([&] { EXPECT_EQ(setDown(), 0); }), IsEmpty());
    EXPECT_THAT(callsOf([&] { EXPECT_EQ(send(PF_Cmd_ABOUT), 0); }), IsEmpty());
    EXPECT_STREQ(out_data.return_msg, "Orbel, v1.4.0\nCustom lens blur plugin for After Effects.");
}

TEST_F(GlobalCommands, SetupKeepsARefusedRegistrationButEndsWithoutMemory) {
    host.failAt(headless::Operation::kRegisterWithAEGP, 1, 513);
    EXPECT_EQ(send(PF_Cmd_GLOBAL_SETUP), 0);
    EXPECT_EQ(kept().error, 513);
    EXPECT_EQ(setDown(), 0);
    out_data = {};
    host.failures().shrinkHandleAt(1);
    EXPECT_EQ(send(PF_Cmd_GLOBAL_SETUP), 4) << "a block that is too small";
    host.failures().clear();
    host.failAt(headless::Operation::kLockHandle, 1);
    EXPECT_EQ(send(PF_Cmd_GLOBAL_SETUP), 4) << "a block that can't be locked";
    EXPECT_EQ(out_data.global_data, nullptr);
}

}  // namespace
