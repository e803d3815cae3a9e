#include "pipeline/RenderMain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "pipeline/ShapeParameter.h"
#include "pipeline/StageFixture.h"

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

    // Renders with N layers in a context of its own, edge detection on.
    template <std::size_t N>
    int render(std::int32_t mode = kCompositeNormal) {
        StageFixture frame(host, depth.record());
        frame.show(input, output);
        frame.info.radius = 10.0;
        frame.info.repeatEdge = true;
        frame.info.compositeMode = mode;
        frame.info.edgeLeak = 1.0;
        return RenderMainT<N>(&frame.inData, frame.hostData, input.layer(), output.layer(),
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
// failure ends the frame with its code, and everything is given back.
TEST(RenderMain, FailureOfAnyHostCallEndsTheFrameCleanly) {
    using headless::Operation;
    RenderCase frame;
    ASSERT_EQ(frame.render<3>(), PF_Err_NONE);
    for (const Operation operation : {Operation::NewHandle, Operation::NewWorld,
                                      Operation::IterateGeneric, Operation::GetNumThreads}) {
        frame.host.failures().clear();
        ASSERT_EQ(frame.render<3>(), PF_Err_NONE);
        const std::int64_t calls = frame.host.failures().count(operation);
        ASSERT_GT(calls, 0);
        const bool memory = operation == Operation::NewHandle;
        const int code = memory ? PF_Err_OUT_OF_MEMORY : PF_Err_INTERNAL_STRUCT_DAMAGED;
        for (std::int64_t k = 1; k <= calls; ++k) {
            const int drawn = frame.host.info().draws;
            frame.host.failures().clear();
            frame.host.failAt(operation, k, code);
            EXPECT_EQ(frame.render<3>(), code) << "call " << k << " of " << calls;
            // The panel speaks of the two large buffers only.
            EXPECT_EQ(frame.host.info().draws != drawn, memory && k <= 2) << "call " << k;
            frame.expectAllGivenBack();
        }
    }
}

TEST(RenderMain, UnknownCompositeModeLeavesTheOutputUnwritten) {
    RenderCase frame;
    EXPECT_EQ(frame.render<3>(7), PF_Err_NONE);
    EXPECT_TRUE(frame.output.holdsPatternOnly());
}

// The calls that ask for something or give it back, and the iterations, without the suites' names
// around each.
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
        "AEGP_GetNumThreads", "host_new_handle 88", "host_new_handle 520",
        // Kernels: the shape image, the totals, normalising, the bank's transform.
        "checkout_param 7", "checkin_param 7", "checkout_param 7", "AcquireSuite PF World Suite 2",
        "PF_NewWorld 256 256", "AEGP_IterateGeneric 65536", "AEGP_GetNumThreads",
        "host_new_handle 40", "AEGP_IterateGeneric 4096", "host_dispose_handle", "PF_DisposeWorld",
        "ReleaseSuite PF World Suite 2", "AEGP_IterateGeneric 4096", "checkin_param 7",
        "AEGP_IterateGeneric 64", "AEGP_IterateGeneric 8192", "AEGP_IterateGeneric 64",
        "progress 1 2",
        // Depth, gradient and edge, then the store stage; the gradient goes before it.
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

}  // namespace
