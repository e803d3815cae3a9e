// The order in which a frame calls the host.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "frame/FrameSetup.h"

namespace frame {
namespace {

using testing::ElementsAreArray;

// The calls of one frame, without those for memory and for reading parameters.
std::vector<std::string> stageCalls(BlurEffect& blur, const headless::FrameRequest& request) {
    blur.host.startCallLog();
    EXPECT_EQ(blur.render(request).status, 0);
    std::vector<std::string> calls;
    for (const std::string& call : blur.host.takeCallLog()) {
        for (const char* kept : {"AEGP_Iterate", "progress", "PF_NewWorld", "PF_DisposeWorld",
                                 "copy", "checkout_layer", "checkout_output"}) {
            if (call.starts_with(kept)) calls.push_back(call);
        }
    }
    return calls;
}

std::vector<std::string> transformCalls() {
    return {"AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192", "AEGP_IterateGeneric 64"};
}

void append(std::vector<std::string>& calls, const std::vector<std::string>& more) {
    calls.insert(calls.end(), more.begin(), more.end());
}

std::vector<std::string> blockCalls(int tilePixels) {
    std::vector<std::string> calls{"AEGP_IterateGeneric 4096"};
    append(calls, transformCalls());
    calls.push_back("AEGP_IterateGeneric 4096");
    append(calls, transformCalls());
    calls.push_back("AEGP_IterateGeneric " + std::to_string(tilePixels));
    return calls;
}

TEST(FrameCalls, StagesRunInOrderTileAfterTile) {
    BlurEffect blur;
    blur.effect.parameters().setLayer(blur.effect.parameters().find("Custom Blur Shape"), nullptr);
    std::vector<std::string> expected = {"checkout_layer 0", "checkout_layer_pixels 0",
                                         "checkout_output"};
    append(expected, {"PF_NewWorld 256 256", "AEGP_IterateGeneric 65536",
                      "AEGP_IterateGeneric 4096", "PF_DisposeWorld", "AEGP_IterateGeneric 4096"});
    append(expected, transformCalls());
    append(expected, {"progress 1 3"});
    append(expected, blockCalls(52 * 30));
    append(expected, {"progress 2 3"});
    append(expected, blockCalls(8 * 30));
    append(expected, {"progress 3 3"});
    EXPECT_THAT(stageCalls(blur, requestFor(noisePicture(60, 30, 32), 32)),
                ElementsAreArray(expected));
}

// What a frame holds goes back in the opposite order: the suites of the frame's loader, the depth
// layer's wrapper and check-out, the frame's own suite, the record, the suites of the context.
TEST(FrameCalls, WhatAFrameHoldsGoesBackInReverse) {
    BlurEffect blur;
    blur.useDepth(depthPicture(20, 20), 2);
    blur.host.startCallLog();
    ASSERT_EQ(blur.render(requestFor(noisePicture(20, 20, 8), 8)).status, 0);
    std::vector<std::string> calls = blur.host.takeCallLog();
    const auto last = std::find(calls.begin(), calls.end(), "progress 2 2");
    ASSERT_NE(last, calls.end());
    calls.erase(calls.begin(), last + 1);
    // Tables, block buffer and kernel bank first, then the driver's suite.
    std::vector<std::string> expected;
    for (int i = 0; i < 4; ++i) append(expected, {"host_unlock_handle", "host_dispose_handle"});
    append(expected,
           {"ReleaseSuite PF World Suite 2", "ReleaseSuite PF SamplingFloat Suite 1",
            "ReleaseSuite PF World Suite 2", "checkin_param 13", "ReleaseSuite PF World Suite 2",
            "host_unlock_handle", "host_dispose_handle", "ReleaseSuite PF SamplingFloat Suite 1",
            "ReleaseSuite PF Sampling16 Suite 1", "ReleaseSuite PF Sampling8 Suite 1"});
    EXPECT_THAT(calls, ElementsAreArray(expected));
}

TEST(FrameCalls, RadiusZeroIsOneCopy) {
    BlurEffect blur;
    blur.set("Blur Radius", 0);
    EXPECT_THAT(stageCalls(blur, requestFor(noisePicture(20, 20, 8), 8)),
                testing::ElementsAre("checkout_layer 0", "checkout_layer_pixels 0",
                                     "checkout_output", "copy"));
}

// Parameters are read at the command's time in one order, each by two check-outs: one for the type
// and one for the value.
TEST(FrameCalls, ParametersAreReadInOneOrder) {
    BlurEffect blur;
    blur.host.startCallLog();
    blur.render(requestFor(noisePicture(20, 20, 8), 8));
    std::vector<std::string> reads;
    for (const std::string& call : blur.host.takeCallLog()) {
        if (!call.starts_with("checkout_param ")) continue;
        if (reads.empty() || reads.back() != call) reads.push_back(call);
    }
    std::vector<std::string> expected;
    for (const int index : {1,  11, 13, 1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 15,
                            14, 24, 16, 23, 17, 18, 19, 20, 21, 22, 25, 26, 1,  7}) {
        expected.push_back("checkout_param " + std::to_string(index));
    }
    EXPECT_THAT(reads, ElementsAreArray(expected));
}

}  // namespace
}  // namespace frame
