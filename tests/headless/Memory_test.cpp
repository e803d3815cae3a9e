#include "headless/Memory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "headless/Host.h"
#include "platform/Suites.h"

namespace headless {
namespace {

class MemoryTest : public testing::Test {
protected:
    MemoryTest() {
        const void* table = nullptr;
        in.pica_basicP->AcquireSuite(kPFWorldSuite, kPFWorldSuiteVersion2, &table);
        worldSuite = static_cast<const PF_WorldSuite2*>(table);
        in.pica_basicP->ReleaseSuite(kPFWorldSuite, kPFWorldSuiteVersion2);
    }
    PF_Err newWorld(int width, int height, PF_LayerDef& record, bool clear = false) {
        return worldSuite->PF_NewWorld(in.effect_ref, width, height, clear, PF_PixelFormat_ARGB128,
                                       &record);
    }

    Host host{{1, ExecutorKind::Threads, kNoMemoryLimit}};
    PF_InData in = host.makeInData();
    PF_UtilCallbacks& utils = *in.utils;
    const PF_WorldSuite2* worldSuite = nullptr;
};

TEST_F(MemoryTest, HandleIsZeroedAlignedAndOfTheSizeAsked) {
    for (const A_HandleSize size : {0, 1, 7, 16, 4097}) {
        const PF_Handle handle = utils.host_new_handle(size);
        ASSERT_NE(handle, nullptr);
        EXPECT_EQ(utils.host_get_handle_size(handle), size);
        auto* bytes = static_cast<std::uint8_t*>(utils.host_lock_handle(handle));
        EXPECT_EQ(*handle, bytes);
        EXPECT_EQ((reinterpret_cast<std::uintptr_t>(bytes) + 8) % 64, 0u);
        for (A_HandleSize i = 0; i < size; ++i) ASSERT_EQ(bytes[i], 0);
        std::memset(bytes, 0xFF, size);
        EXPECT_EQ(host.accounts().outstanding.at(0).locks, 1);
        utils.host_unlock_handle(handle);
        utils.host_dispose_handle(handle);
    }
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
    EXPECT_EQ(host.memory().current, 0u);
    EXPECT_EQ(host.memory().peak, 4097u);
}

TEST_F(MemoryTest, MisuseOfHandlesAndWritesOutsideAreFaults) {
    const PF_Handle handle = utils.host_new_handle(8);
    utils.host_unlock_handle(handle);
    EXPECT_EQ(host.accounts().faults.size(), 1u) << "unlocked, though not locked";
    utils.host_dispose_handle(handle);
    utils.host_dispose_handle(handle);
    EXPECT_EQ(utils.host_lock_handle(handle), nullptr);
    EXPECT_EQ(utils.host_get_handle_size(nullptr), 0u);
    EXPECT_EQ(host.accounts().faults.size(), 4u);
    for (const int offset : {-1, 8}) {
        host.clearFaults();
        const PF_Handle damaged = utils.host_new_handle(8);
        static_cast<std::uint8_t*>(utils.host_lock_handle(damaged))[offset] ^= 1;
        utils.host_unlock_handle(damaged);
        utils.host_dispose_handle(damaged);
        EXPECT_EQ(host.accounts().faults.size(), 1u) << offset;
    }
    EXPECT_TRUE(host.accounts().allGivenBack());
}

TEST_F(MemoryTest, LimitHoldsForHandlesAndWorldsTogether) {
    constexpr std::uint64_t worldBytes = 10 * 10 * 16;
    host.setMemoryLimit(worldBytes + 100);
    PF_LayerDef world{};
    ASSERT_EQ(newWorld(10, 10, world), PF_Err_NONE);
    EXPECT_EQ(utils.host_new_handle(101), nullptr);
    const PF_Handle handle = utils.host_new_handle(100);
    ASSERT_NE(handle, nullptr);
    PF_LayerDef second{};
    EXPECT_EQ(newWorld(1, 1, second), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(second.data, nullptr);

    EXPECT_EQ(host.memory().current, worldBytes + 100);
    utils.host_dispose_handle(handle);
    EXPECT_EQ(worldSuite->PF_DisposeWorld(in.effect_ref, &world), PF_Err_NONE);
    EXPECT_EQ(host.memory().current, 0u);
    EXPECT_EQ(host.memory().peak, worldBytes + 100);
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(MemoryTest, ImpossibleRequestsFailCleanly) {
    EXPECT_EQ(utils.host_new_handle(UINT64_MAX), nullptr);
    PF_LayerDef world{};
    EXPECT_EQ(newWorld(INT32_MAX, INT32_MAX, world), PF_Err_OUT_OF_MEMORY);
    EXPECT_NE(newWorld(0, 4, world), PF_Err_NONE);
    EXPECT_EQ(host.memory().current, 0u);
    EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
}

TEST_F(MemoryTest, NewWorldsAreClearedOnlyOnRequestAndKnownByTheirRecord) {
    PF_LayerDef junk{};
    PF_LayerDef clear{};
    newWorld(3, 2, junk);
    newWorld(3, 2, clear, true);
    EXPECT_TRUE(std::isnan(static_cast<PF_PixelFloat*>(junk.data)->red));
    EXPECT_EQ(static_cast<PF_PixelFloat*>(clear.data)->red, 0);

    const PF_LayerDef copy = clear;
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    EXPECT_EQ(worldSuite->PF_GetPixelFormat(&copy, &format), PF_Err_NONE);
    EXPECT_EQ(format, PF_PixelFormat_ARGB128);
    const PF_LayerDef none{};
    EXPECT_NE(worldSuite->PF_GetPixelFormat(&none, &format), PF_Err_NONE);

    // A row further down than the picture has.
    static_cast<PF_PixelFloat*>(junk.data)[6].alpha = 1;
    worldSuite->PF_DisposeWorld(in.effect_ref, &junk);
    EXPECT_EQ(host.accounts().faults.size(), 1u);
    EXPECT_EQ(host.accounts().outstanding.size(), 1u) << host.accounts().describe();
    worldSuite->PF_DisposeWorld(in.effect_ref, &clear);
    EXPECT_EQ(worldSuite->PF_DisposeWorld(in.effect_ref, &clear), PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(host.accounts().faults.size(), 2u);
}

TEST_F(MemoryTest, AccountsNameWhatIsOut) {
    const void* suite = nullptr;
    in.pica_basicP->AcquireSuite(kPFSampling8Suite, 1, &suite);
    in.pica_basicP->AcquireSuite(kPFSampling8Suite, 1, &suite);
    const PF_Handle handle = utils.host_new_handle(40);
    const Accounts accounts = host.accounts();
    ASSERT_EQ(accounts.outstanding.size(), 2u);
    EXPECT_EQ(accounts.outstanding[0].name, "PF Sampling8 Suite 1");
    EXPECT_EQ(accounts.outstanding[0].count, 2);
    EXPECT_EQ(accounts.outstanding[1].bytes, 40u);
    EXPECT_FALSE(accounts.allGivenBackBut("PF Sampling8 Suite 1"));
    utils.host_dispose_handle(handle);
    in.pica_basicP->ReleaseSuite(kPFSampling8Suite, 1);
    in.pica_basicP->ReleaseSuite(kPFSampling8Suite, 1);
    EXPECT_TRUE(host.accounts().clean());
    EXPECT_NE(in.pica_basicP->ReleaseSuite(kPFSampling8Suite, 1), 0);
    EXPECT_FALSE(host.accounts().clean());
}

}  // namespace
}  // namespace headless
