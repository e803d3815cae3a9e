// SPDX-License-Identifier: Apache-2.0
// Memory as the effect gets it, and the books that record misuse.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "headless/Host.h"
#include "platform/Suites.h"

namespace headless {
namespace {

class Memory : public testing::Test {
protected:
    std::size_t faults() { return host.accounts().faults.size(); }

    Host host{{1, ExecutorKind::kThreads, kNoMemoryLimit}};
    PF_InData in = host.makeInData();
    PF_UtilCallbacks& utils = *in.utils;
};

TEST_F(Memory, MisuseOfHandlesAndWritesOutsideAreFaults) {
    const PF_Handle handle = utils.host_new_handle(8);
    utils.host_unlock_handle(handle);
    EXPECT_EQ(faults(), 1u) << "unlocked, though not locked";
    utils.host_dispose_handle(handle);
    utils.host_dispose_handle(handle);
    EXPECT_EQ(utils.host_lock_handle(handle), nullptr);
    EXPECT_EQ(faults(), 3u);
    for (const int offset : {-1, 8}) {
        host.clearFaults();
        const PF_Handle damaged = utils.host_new_handle(8);
        static_cast<std::uint8_t*>(utils.host_lock_handle(damaged))[offset] ^= 1;
        utils.host_unlock_handle(damaged);
        utils.host_dispose_handle(damaged);
        EXPECT_EQ(faults(), 1u) << offset;
    }
}

TEST_F(Memory, WorldsStartAsNoNumbersAndAreWatched) {
    const void* table = nullptr;
    in.pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &table);
    const auto& suite = *static_cast<const PF_WorldSuite2*>(table);
    PF_LayerDef world{};
    suite.PF_NewWorld(in.effect_ref, 3, 2, 0, PF_PixelFormat_ARGB128, &world);
    EXPECT_TRUE(std::isnan(static_cast<PF_PixelFloat*>(world.data)->red));
    // A row below the image.
    static_cast<PF_PixelFloat*>(world.data)[6].alpha = 1;
    EXPECT_EQ(host.accounts().outstanding.size(), 2u) << "suite and world";
    const PF_LayerDef copy = world;
    suite.PF_DisposeWorld(in.effect_ref, &world);
    EXPECT_EQ(faults(), 1u);
    world = copy;
    EXPECT_EQ(suite.PF_DisposeWorld(in.effect_ref, &world), PF_Err_BAD_CALLBACK_PARAM);
    in.pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
    EXPECT_TRUE(host.accounts().allGivenBack());
    EXPECT_NE(in.pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2), 0);
    EXPECT_EQ(faults(), 3u);
}

// Some of the host's functions carry no context, so there can't be two hosts.
TEST_F(Memory, ASecondHostIsRefused) {
    EXPECT_THROW(Host{}, std::logic_error);
}

}  // namespace
}  // namespace headless
