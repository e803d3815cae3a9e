#include "pipeline/KernelBuild.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "pipeline/ShapeParameter.h"
#include "pipeline/StageFixture.h"

namespace {

constexpr std::size_t kSize = 64;

// What the stand-in for the world suite answers.
PF_Err answerFloat(const PF_EffectWorld*, PF_PixelFormat* format) {
    *format = PF_PixelFormat_ARGB128;
    return PF_Err_NONE;
}
PF_Err answerDeep(const PF_EffectWorld*, PF_PixelFormat* format) {
    *format = PF_PixelFormat_ARGB64;
    return PF_Err_NONE;
}
PF_Err answerUnknown(const PF_EffectWorld*, PF_PixelFormat* format) {
    *format = 0x676e6972;
    return PF_Err_NONE;
}
PF_Err answerDamaged(const PF_EffectWorld*, PF_PixelFormat*) {
    return PF_Err_INTERNAL_STRUCT_DAMAGED;
}

struct KernelCase {
    explicit KernelCase(std::shared_ptr<const headless::World> shape)
        : frame(host), filter(frame.hostData, kSize) {
        declareShapeParameter(host, std::move(shape));
    }

    int build(PF_Err (*formatOf)(const PF_EffectWorld*, PF_PixelFormat*)) {
        const PF_WorldSuite2 worlds{
            .PF_NewWorld = nullptr, .PF_DisposeWorld = nullptr, .PF_GetPixelFormat = formatOf};
        return KernelBuild<2>(&frame.inData, frame.hostData, frame.info,
                              formatOf ? &worlds : nullptr, filter)
            .run();
    }

    double sum(std::size_t layer) const {
        double total = 0.0;
        for (std::size_t p = 0; p < kSize * kSize; ++p) total += filter[2 * p][layer];
        return total;
    }

    headless::Host host;
    StageFixture frame;
    Filter<2> filter;
};

std::shared_ptr<headless::World> squareShape(PF_PixelFormat format) {
    auto shape = std::make_shared<headless::World>(16, 16, format);
    shape->fill({1.0F, 0.5F, 0.25F, 1.0F});
    return shape;
}

constexpr double kUnitGain = 1.0 / (kSize * kSize);

TEST(KernelBuild, GeneratedShapeGivesUnitGainAndIsFreed) {
    KernelCase kernels(nullptr);
    EXPECT_EQ(kernels.build(nullptr), PF_Err_NONE);
    EXPECT_NEAR(kernels.sum(0), kUnitGain, 1e-15);
    EXPECT_NEAR(kernels.filter[0][1], kUnitGain, 1e-15);  // the sharpest layer is a point
    // Nothing is held but the bank and the context's three sampling suites (and those loaded).
    const headless::Accounts accounts = kernels.host.accounts();
    for (const auto& out : accounts.outstanding) {
        EXPECT_TRUE(out.kind == "suite" || out.kind == "handle") << accounts.describe();
    }
    EXPECT_TRUE(accounts.faults.empty()) << accounts.describe();
}

// The layer's own format picks the sampling, and without a suite to ask it counts as 8 bits.
TEST(KernelBuild, LayerIsSampledInItsOwnFormat) {
    const struct {
        PF_PixelFormat format;
        PF_Err (*answer)(const PF_EffectWorld*, PF_PixelFormat*);
        const char* sampling;
    } cases[] = {{PF_PixelFormat_ARGB128, answerFloat, "AcquireSuite PF SamplingFloat Suite 1"},
                 {PF_PixelFormat_ARGB64, answerDeep, "AcquireSuite PF Sampling16 Suite 1"},
                 {PF_PixelFormat_ARGB32, nullptr, "AcquireSuite PF Sampling8 Suite 1"}};
    for (const auto& [format, answer, sampling] : cases) {
        KernelCase kernels(squareShape(format));
        kernels.host.startCallLog();
        EXPECT_EQ(kernels.build(answer), PF_Err_NONE);
        std::vector<std::string> loaded;
        for (const std::string& call : kernels.host.takeCallLog()) {
            if (call.starts_with("AcquireSuite PF Sampling")) loaded.push_back(call);
        }
        // Two workers may meet at the first use; each then loads the same suite.
        ASSERT_FALSE(loaded.empty());
        for (const std::string& call : loaded) EXPECT_EQ(call, sampling);
    }
}

TEST(KernelBuild, UnknownFormatLeavesTheBankZeroAndAnErrorEndsTheBuild) {
    KernelCase kernels(squareShape(PF_PixelFormat_ARGB32));
    EXPECT_EQ(kernels.build(answerUnknown), PF_Err_NONE);
    for (std::size_t i = 0; i < 2 * kSize * kSize; ++i) {
        ASSERT_EQ(kernels.filter[i][0], 0.0);
        ASSERT_EQ(kernels.filter[i][1], 0.0);
    }
    EXPECT_EQ(kernels.build(answerDamaged), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST(KernelBuild, FailedShapeImageEndsTheBuildWithItsCode) {
    KernelCase kernels(nullptr);
    kernels.host.failAt(headless::Operation::NewWorld, 1, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(kernels.build(nullptr), PF_Err_OUT_OF_MEMORY);
}

}  // namespace
