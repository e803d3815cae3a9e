// SPDX-License-Identifier: Apache-2.0
// How a frame ends when the host fails: the code, the message, the output, the books.

#include <gmock/gmock.h>

#include <algorithm>

#include "support/FrameSetup.h"
#include "trial/Pictures.h"

namespace frame {
namespace {

constexpr const char* kMemoryMessage =
    "TARNWICK Orbel\nMemory is insufficient.\nReduce [Blur Radius] or [Resolution] of Depth Map.";

headless::FrameRequest smallFrame() {
    return requestFor(noisePicture(60, 30, 32), 32);
}

void expectAllGivenBack(BlurEffect& blur) {
    const headless::Accounts accounts = blur.host.accounts();
    EXPECT_TRUE(accounts.clean()) << accounts.describe();
}

void expectMemoryShortage(const headless::FrameResult& result) {
    EXPECT_EQ(result.status, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(result.message, kMemoryMessage);
    EXPECT_TRUE(result.outputUntouched);
    EXPECT_THAT(result.info.lines,
                testing::ElementsAre("TARNWICK Orbel", "Insufficient memory",
                                     "Decrease Orbel radius or Depth Layer Resolution."));
    EXPECT_THAT(result.info.color, testing::FieldsAre(255, 0, 0, 255));
}

class MemoryShortage : public testing::TestWithParam<std::uint64_t> {};

TEST_P(MemoryShortage, IsToldAndLeavesThePictureAlone) {
    const std::uint64_t layers = GetParam();
    // The kernel bank and the block buffer, with their handle words.
    const std::uint64_t bankBytes = 2 * 64 * 64 * layers * 8 + 8;
    const std::uint64_t blockBytes = 2 * 64 * 64 * (layers == 1 ? 4 : 5 * layers) * 8 + 8;
    BlurEffect blur;
    if (layers > 1) blur.useDepth(trial::depthPicture(60, 30, 32), static_cast<int>(layers));
    const std::uint64_t base = blur.host.memory().current;
    blur.host.resetPeak();
    blur.host.startCallLog();
    EXPECT_EQ(blur.render(smallFrame()).status, 0);
    blur.host.takeCallLog();
    const headless::MemoryUse use = blur.host.memory();
    const auto& held = use.afterEachRequest;

    // The bank is the first large request and the block buffer follows it.
    const auto large = std::find_if(held.begin(), held.end(),
                                    [&](std::uint64_t bytes) { return bytes >= base + bankBytes; });
    ASSERT_NE(large, held.end());
    ASSERT_NE(large + 1, held.end());
    EXPECT_EQ(*(large + 1) - *large, blockBytes);
    for (const std::uint64_t afterRequest : {*large, *(large + 1)}) {
        blur.host.setMemoryLimit(afterRequest - 1);
        expectMemoryShortage(blur.render(smallFrame()));
        expectAllGivenBack(blur);
    }

    blur.host.setMemoryLimit(use.peak);
    EXPECT_EQ(blur.render(smallFrame()).status, 0);
    expectAllGivenBack(blur);
}

INSTANTIATE_TEST_SUITE_P(Layers, MemoryShortage, testing::Values(1u, 3u, 16u));

TEST(FrameFailures, CancelAtEachProgressReport) {
    BlurEffect blur;
    for (int k = 1; k <= 3; ++k) {
        blur.host.failures().clear();
        blur.host.failAt(headless::Operation::kProgress, k, PF_Interrupt_CANCEL);
        const auto result = blur.render(smallFrame());
        EXPECT_EQ(result.status, PF_Interrupt_CANCEL);
        EXPECT_EQ(result.outputUntouched, k == 1);
        EXPECT_TRUE(result.message.empty());
        EXPECT_EQ(blur.host.failures().count(headless::Operation::kProgress), k);
        expectAllGivenBack(blur);
    }
}

TEST(FrameFailures, SamplingFailsWhileKernelsAreBuilt) {
    BlurEffect blur;
    blur.host.failAt(headless::Operation::kAreaSample, 100, PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(blur.render(smallFrame()).status, PF_Err_INVALID_CALLBACK);
    // The contexts of pre-render and render take the first two acquisitions; the kernels' own comes
    // third, on a worker thread, and the code crosses the host as an exception.
    blur.host.failures().clear();
    blur.host.failures().failSuite("PF SamplingFloat Suite", 3);
    EXPECT_EQ(blur.render(smallFrame()).status, PF_Err_BAD_CALLBACK_PARAM);
    expectAllGivenBack(blur);
}

}  // namespace
}  // namespace frame
