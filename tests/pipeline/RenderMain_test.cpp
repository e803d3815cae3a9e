// SPDX-License-Identifier: Apache-2.0
#include "pipeline/RenderMain.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "support/ShapeParameter.h"
#include "support/StageFixture.h"

namespace {

// A frame at a radius of 10 with a depth map. The block is 64 and the stride 44: the usual width of
// 75 makes two tiles.
struct RenderCase {
    explicit RenderCase(int width = 75)
        : host({.threads = 2}),
          input(width, 40, PF_PixelFormat_ARGB128),
          output(width, 40, PF_PixelFormat_ARGB128),
          depth(width, 40, PF_PixelFormat_ARGB128) {
        declareShapeParameter(host, nullptr);
        input.fill({1.0F, 0.25F, 0.5F, 0.75F});
        depth.fill({1.0F, 0.4F, 0.4F, 0.4F});
        output.fillWithPattern();
    }

    // Renders with N layers in a context of its own, with edge detection, and with `suites` if
    // given.
    template <std::size_t N>
    int render(std::int32_t mode = kCompositeNormal, SPBasicSuite* suites = nullptr) {
        StageFixture frame(host, depth.record());
        if (suites) frame.in_data.pica_basicP = suites;
        frame.show(input, output);
        frame.info.radius = 10.0;
        frame.info.repeatEdge = true;
        frame.info.compositeMode = mode;
        frame.info.edgeLeak = 1.0;
        return RenderMainT<N>(&frame.in_data, frame.context, input.layer(), output.layer(),
                              frame.info, PF_PixelFormat_ARGB128);
    }

    void expectAllGivenBack() {
        const headless::Accounts accounts = host.accounts();
        EXPECT_TRUE(accounts.clean()) << accounts.describe();
    }

    headless::Host host;
    headless::World input;
    headless::World output;
    headless::World depth;
};

void expectConstant(const headless::World& output) {
    for (int y = 0; y < output.height(); ++y) {
        for (int x = 0; x < output.width(); ++x) {
            const PF_PixelFloat pixel = output.get(x, y);
            ASSERT_NEAR(pixel.alpha, 1.0F, 1e-6F) << x << ", " << y;
            ASSERT_NEAR(pixel.red, 0.25F, 1e-6F) << x << ", " << y;
            ASSERT_NEAR(pixel.blue, 0.75F, 1e-6F) << x << ", " << y;
        }
    }
    EXPECT_EQ(output.damage(), "");
}

TEST(RenderMain, ConstantFrameStaysConstantForEveryLayerCountAndMode) {
    RenderCase frame;
    for (const std::int32_t mode : {kCompositeNormal, kCompositeSplit}) {
        const auto check = [&](int result) {
            EXPECT_EQ(result, PF_Err_NONE);
            expectConstant(frame.output);
            frame.output.fillWithPattern();
        };
        [&]<std::size_t... N>(std::index_sequence<N...>) {
            (check(frame.render<N>(mode)), ...);
        }
        (BuiltLayerCounts{});
    }
    frame.expectAllGivenBack();
}

// Every request for memory or a world, every iteration and every question for the thread count: a
// failure ends the frame with its code, and everything is released.
TEST(RenderMain, FailureOfAnyHostCallEndsTheFrameCleanly) {
    using headless::Operation;
    RenderCase frame;
    ASSERT_EQ(frame.render<3>(), PF_Err_NONE);
    for (const Operation operation : {Operation::kNewHandle, Operation::kNewWorld,
                                      Operation::kIterateGeneric, Operation::kGetNumThreads}) {
        frame.host.failures().clear();
        ASSERT_EQ(frame.render<3>(), PF_Err_NONE);
        const std::int64_t calls = frame.host.failures().count(operation);
        ASSERT_GT(calls, 0);
        const bool memory = operation == Operation::kNewHandle;
        const int code = memory ? PF_Err_OUT_OF_MEMORY : PF_Err_INTERNAL_STRUCT_DAMAGED;
        for (std::int64_t k = 1; k <= calls; ++k) {
            const int drawn = frame.host.info().draws;
            frame.host.failures().clear();
            frame.host.failAt(operation, k, code);
            EXPECT_EQ(frame.render<3>(), code) << "call " << k << " of " << calls;
            // The panel reports only the two large buffers.
            EXPECT_EQ(frame.host.info().draws != drawn, memory && k <= 2) << "call " << k;
            frame.expectAllGivenBack();
        }
    }
}

// The calls that acquire or release something, and the iterations, without the suite acquired for
// each.
std::vector<std::string> chiefCalls(const std::vector<std::string>& log) {
    static const std::vector<std::string> kChief{
        "host_new_handle",    "host_dispose_handle", "PF_NewWorld",      "PF_DisposeWorld",
        "AEGP_GetNumThreads", "AEGP_IterateGeneric", "checkout_param",   "checkin_param",
        "progress",           "AcquireSuite PF W",   "ReleaseSuite PF W"};
    std::vector<std::string> calls;
    std::copy_if(log.begin(), log.end(), std::back_inserter(calls), [](const std::string& call) {
        return std::any_of(kChief.begin(), kChief.end(),
                           [&](const std::string& chief) { return call.starts_with(chief); });
    });
    return calls;
}

TEST(RenderMain, CallsTheHostInOrder) {
    RenderCase frame(44);
    frame.host.startCallLog();
    ASSERT_EQ(frame.render<2>(), PF_Err_NONE);
    const std::vector<std::string> expected{
        "AcquireSuite PF World Suite 2",  // the depth map's wrapper, before the driver
        // The driver's own buffers: bank, block, tables.
        "AcquireSuite PF World Suite 2", "host_new_handle 131080", "host_new_handle 655368",
        "AEGP_GetNumThreads", "host_new_handle 2568", "host_new_handle 16392",
        // Kernels: the shape image, the totals, normalising, the bank's transform.
        "checkout_param 7", "checkin_param 7", "checkout_param 7", "AcquireSuite PF World Suite 2",
        "PF_NewWorld 256 256", "AEGP_IterateGeneric 65536", "AEGP_GetNumThreads",
        "host_new_handle 1032", "AEGP_IterateGeneric 4096", "host_dispose_handle",
        "PF_DisposeWorld", "ReleaseSuite PF World Suite 2", "AEGP_IterateGeneric 4096",
        "checkin_param 7", "AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192",
        "AEGP_IterateGeneric 64", "progress 1 2",
        // Depth, gradient and edge, then the store stage; the gradient is freed before it.
        "host_new_handle 16392", "AEGP_IterateGeneric 4096", "host_new_handle 65544",
        "host_new_handle 16392", "AEGP_IterateGeneric 4096", "AEGP_IterateGeneric 4096",
        "host_dispose_handle", "AEGP_IterateGeneric 4096", "host_dispose_handle",
        "host_dispose_handle",
        // Forward, multiply, inverse, unpack.
        "AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192", "AEGP_IterateGeneric 64",
        "AEGP_IterateGeneric 4096", "AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192",
        "AEGP_IterateGeneric 64", "AEGP_IterateGeneric 1760", "progress 2 2",
        // Tables (two), block, bank; the suite; the wrapper's suite.
        "host_dispose_handle", "host_dispose_handle", "host_dispose_handle", "host_dispose_handle",
        "ReleaseSuite PF World Suite 2", "ReleaseSuite PF World Suite 2"};
    EXPECT_EQ(chiefCalls(frame.host.takeCallLog()), expected);
}

// The block goes through the inverse transform and the unpack stage as it was stored.
TEST(RenderMain, UnknownCompositeModeSkipsTheConvolution) {
    RenderCase frame(44);
    frame.host.startCallLog();
    EXPECT_EQ(frame.render<1>(7), PF_Err_NONE);
    auto calls = chiefCalls(frame.host.takeCallLog());
    calls.erase(calls.begin(), std::find(calls.begin(), calls.end(), "progress 1 2") + 1);
    calls.resize(6);
    EXPECT_THAT(calls, testing::ElementsAre("AEGP_IterateGeneric 4096", "AEGP_IterateGeneric 64",
                                            "AEGP_IterateGeneric 8192", "AEGP_IterateGeneric 64",
                                            "AEGP_IterateGeneric 1760", "progress 2 2"));
    EXPECT_FALSE(frame.output.holdsPatternOnly());
    frame.output.fillWithPattern();
    EXPECT_EQ(frame.render<3>(7), PF_Err_NONE);
    EXPECT_TRUE(frame.output.holdsPatternOnly()) << "unpack writes nothing either";
}

// What the host reports as the shape layer's format, in place of the true one.
PF_PixelFormat answeredFormat;
PF_Err answeredCode;
PF_Err acquireCode;
SPBasicSuite* realSuites;

SPErr acquireAnswering(const char* name, std::int32_t version, const void** suite) {
    const std::string wanted(name);
    const SPErr err = realSuites->AcquireSuite(name, version, suite);
    if (wanted != kPFWorldSuite) return err;
    static PF_WorldSuite2 table;
    table = *static_cast<const PF_WorldSuite2*>(*suite);
    table.PF_GetPixelFormat = [](const PF_EffectWorld*, PF_PixelFormat* format) {
        *format = answeredFormat;
        return answeredCode;
    };
    *suite = &table;
    if (acquireCode) realSuites->ReleaseSuite(name, version);
    return acquireCode;
}

TEST(RenderMain, ShapeLayerIsReadInTheFormatThatTheHostNames) {
    RenderCase frame;
    auto shape = std::make_shared<headless::World>(16, 16, PF_PixelFormat_ARGB32);
    shape->fill({1.0F, 0.5F, 0.25F, 1.0F});
    frame.host.parameters().setLayer(kCustomBlurShape, shape);
    realSuites = frame.host.makeInData().pica_basicP;
    SPBasicSuite suites = *realSuites;
    suites.AcquireSuite = acquireAnswering;

    answeredFormat = 0x676e6972;
    EXPECT_EQ(frame.render<1>(kCompositeNormal, &suites), PF_Err_NONE);
    const PF_PixelFloat middle = frame.output.get(37, 20);
    EXPECT_THAT(middle, testing::FieldsAre(0, 0, 0, 0)) << "unknown: an empty frame";
    answeredCode = PF_Err_INTERNAL_STRUCT_DAMAGED;
    EXPECT_EQ(frame.render<1>(kCompositeNormal, &suites), PF_Err_INTERNAL_STRUCT_DAMAGED);
    acquireCode = PF_Err_BAD_CALLBACK_PARAM;
    EXPECT_EQ(frame.render<1>(kCompositeNormal, &suites), PF_Err_NONE);
    expectConstant(frame.output);  // read as 8 bits without the suite
    frame.expectAllGivenBack();
}

}  // namespace
