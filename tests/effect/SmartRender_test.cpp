// SPDX-License-Identifier: Apache-2.0
#include "effect/SmartRender.h"

#include "headless/Effect.h"
#include "support/EffectFixture.h"

namespace {

using headless::Operation;

// Changes the record of each command before the effect sees it; null for none.
void (*tamper)(PF_Cmd, PF_InData&, void* extra) = nullptr;

PF_Err tamperedEntry(PF_Cmd command, PF_InData* in_data, PF_OutData* out_data,
                     PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    if (tamper != nullptr) tamper(command, *in_data, extra);
    return EntryPointFunc(command, in_data, out_data, params, output, extra);
}

void failFirstRead(PF_Cmd command, PF_InData& record, void*) {
    constexpr int kOfTheDepthLayer = 1;
    if (command == PF_Cmd_SMART_RENDER) failCheckin(record, kOfTheDepthLayer + 1, 513);
}

// Frames of a small float picture, with a blur radius of 0 unless a test sets another.
class SmartRenderCommand : public HostFixture {
protected:
    SmartRenderCommand() {
        effect.setUp();
        request.input = std::make_shared<headless::World>(6, 4, PF_PixelFormat_ARGB128);
        request.bits = 32;
        effect.parameters().set("Blur Radius", 0);
    }
    void TearDown() override {
        tamper = nullptr;
        effect.setDown();
        HostFixture::TearDown();
    }

    void setDepth() {
        auto& p = effect.parameters();
        p.setLayer(p.find("Depth Map/Layer"),
                   std::make_shared<headless::World>(3, 3, PF_PixelFormat_ARGB128));
    }
    // Renders and expects `code` and an output that wasn't written to.
    void expectFailure(PF_Err code) {
        const headless::FrameResult result = effect.renderFrame(request);
        EXPECT_EQ(result.preRenderStatus, 0);
        EXPECT_EQ(result.renderStatus, code);
        EXPECT_TRUE(result.outputUntouched);
        host.failures().clear();
    }
    // The one record of a frame that ended before the effect took the record over.
    void expectRecordLeft() {
        const headless::Accounts accounts = host.accounts();
        EXPECT_TRUE(accounts.allGivenBackBut(headless::kPreRenderRecord)) << accounts.describe();
        EXPECT_EQ(host.reclaimPreRenderRecords(), 1);
    }

    headless::Effect effect{host, tamperedEntry};
    headless::FrameRequest request;
};

TEST_F(SmartRenderCommand, HoldsAndReleasesInOrder) {
    setDepth();
    Calls calls = callsOf([&] { effect.renderFrame(request); });
    calls.erase(calls.begin(), std::find(calls.begin(), calls.end(), "PF_Cmd_SMART_RENDER") + 1);
    // The reads of the other parameters have a test of their own.
    std::erase_if(calls, [](const std::string& call) {
        return call.find("_param ") != std::string::npos && call.find(" 13") == std::string::npos;
    });
    const Calls expected = withinSampling(
        {"checkout_layer_pixels 0", "checkout_output", "AcquireSuite PF World Suite 2",
         "PF_GetPixelFormat", "checkout_param 13", "checkin_param 13", "checkout_param 13",
         "AcquireSuite PF World Suite 2", "PF_GetPixelFormat", "copy",
         "ReleaseSuite PF World Suite 2", "checkin_param 13", "ReleaseSuite PF World Suite 2",
         "host_unlock_handle", "host_dispose_handle"});
    EXPECT_EQ(calls, expected);
}

TEST_F(SmartRenderCommand, EndsEarlyWithoutSamplingOrWorlds) {
    const std::pair<const char*, PF_Err> suites[] = {
        {kPFSampling8Suite, 0}, {kPFSampling16Suite, 0}, {kPFSamplingFloatSuite, 515}};
    for (const auto& suite : suites) {
        host.failures().failSuite(suite.first, 1, 515);
        const Calls calls = callsOf([&] { expectFailure(suite.second); });
        EXPECT_TRUE(argumentsOf(calls, "checkout_layer_pixels").empty());
        expectRecordLeft();
    }
    for (const Operation operation :
         {Operation::kCheckoutLayerPixels, Operation::kCheckoutOutput}) {
        host.failAt(operation, 1, 513);
        expectFailure(513);
        expectRecordLeft();
    }
    for (const bool input : {true, false}) {
        request.withholdInput = input;
        request.withholdOutput = !input;
        expectFailure(0);
        expectRecordLeft();
    }
}

TEST_F(SmartRenderCommand, EndsWithTheFirstCode) {
    setDepth();
    host.failures().failSuite(kPFWorldSuite, 1, 515);
    expectFailure(515);
    host.failAt(Operation::kGetPixelFormat, 1, 514);
    expectFailure(514);
    effect.parameters().setLayer(effect.parameters().find("Depth Map/Layer"), nullptr);
    host.failAt(Operation::kCopy, 1, 512);
    expectFailure(512);
}

TEST_F(SmartRenderCommand, AFailedReadSkipsTheCopyButNotTheBlur) {
    tamper = failFirstRead;
    expectFailure(513);
    effect.parameters().set("Blur Radius", 3);
    EXPECT_EQ(effect.renderFrame(request).status, 0) << "the pipeline's result replaces it";
}

// No assertion ends the process, and the layer is not checked in again.
TEST_F(SmartRenderCommand, ACancelledCheckInOfTheDepthLayerCancelsTheFrame) {
    setDepth();
    tamper = [](PF_Cmd command, PF_InData& record, void*) {
        static auto real = record.inter.checkin_param;
        if (command != PF_Cmd_SMART_RENDER) return;
        record.inter.checkin_param = [](PF_ProgPtr effectRef, PF_ParamDef* param) {
            return real(effectRef, param) | PF_Interrupt_CANCEL;
        };
    };
    expectFailure(PF_Interrupt_CANCEL);
}

TEST_F(SmartRenderCommand, EndsWithoutARecord) {
    tamper = [](PF_Cmd command, PF_InData&, void* extra) {
        if (command != PF_Cmd_SMART_RENDER) return;
        static_cast<PF_SmartRenderExtra*>(extra)->input->pre_render_data = nullptr;
    };
    expectFailure(4);
    expectRecordLeft();
}

TEST_F(SmartRenderCommand, LeavesTheOldRenderCommandAlone) {
    PF_InData plain = host.makeInData();
    PF_OutData out{};
    testing::internal::CaptureStdout();
    EXPECT_EQ(EntryPointFunc(PF_Cmd_RENDER, &plain, &out, nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Entry Render\n");
}

}  // namespace
