// SPDX-License-Identifier: Apache-2.0
#include "host/EffectWorld.h"

#include <array>
#include <utility>

#include "host/Sampling.h"
#include "support/HostFixture.h"

namespace {

using AEO::PixelFormat::kF32;
using AEO::PixelFormat::kU16;
using AEO::PixelFormat::kU8;
using AEO::PixelFormat::kUnknown;
using testing::ElementsAre;

class EffectWorld : public ContextFixture {};

TEST_F(EffectWorld, SamplesEachFormatOnTheSameScale) {
    for (const PF_PixelFormat format : {kU8, kU16, kF32}) {
        headless::World source(3, 2, format);
        source.fill({1.0f, 0.0f, 0.0f, 0.0f});
        source.set(1, 1, {1.0f, 1.0f, 0.2f, 0.6f});
        const AEO::EffectWorld world(*context, source.record());
        // Half a step of eight bits, and float rounding.
        const float tolerance = 0.5f / 255 + 1e-6f;
        const auto* const bright = source.bytesOfRow(1) + world.bytesPerPixel;
        EXPECT_NEAR(world.fromPixel(bright).blue, 0.6f, tolerance);
        EXPECT_NEAR(world.subpixel_sample(1.0, 1.0).blue, 0.6f, tolerance);
        EXPECT_NEAR(world.subpixel_sample(0.75, 1.0).red, 0.75f, tolerance);
        EXPECT_NEAR(world.area_sample(0.5, 0.5, 1.0, 1.0).red, 0.25f, tolerance);
        EXPECT_EQ(world.area_sample(1e9, 1e9, 0.5, 0.5).alpha, 0.0f) << "far outside";
        EXPECT_EQ(world._err, PF_Err_NONE);
    }
}

TEST_F(EffectWorld, ReadsAnUnknownFormatThroughTheFloatSuite) {
    headless::World source(1, 1, kF32);
    source.set(0, 0, {1.0f, 9.0f, 0.0f, 0.0f});
    AEO::EffectWorld world(*context, source.record());
    host.failAt(headless::Operation::kGetPixelFormat, 1, 512);
    EXPECT_EQ(world.checkFormat(), 512);
    EXPECT_EQ(world.format, kUnknown);
    EXPECT_EQ(world.subpixel_sample(0.0, 0.0).red, 9.0f);
}

// Position, radii and area that a sampler in place of the context's own 16-bit suite receives.
using Seen = std::array<PF_Fixed, 5>;
Seen seen;

TEST_F(EffectWorld, PassesBoxAndPositionToTheSampler) {
    const headless::World source(4, 4, kU16);
    const AEO::EffectWorld world(*context, source.record());
    PF_Sampling16Suite1 recorder = *context->sampling16.suite;
    recorder.subpixel_sample = recorder.area_sample =
        [](PF_ProgPtr, PF_Fixed x, PF_Fixed y, const PF_SampPB* params, PF_Pixel16*) -> PF_Err {
        seen = {x, y, params->x_radius, params->y_radius, params->area};
        return 0;
    };
    const PF_Sampling16Suite1* const own = std::exchange(context->sampling16.suite, &recorder);
    world.area_sample(-0.25, 2.0, 0.0, 1000.0);
    EXPECT_EQ(seen, (Seen{-16384, 131072, 1, 8388608, 8388608}));
    world.area_sample16(0.0, 0.0, 500.0, 500.0);
    EXPECT_EQ(seen, (Seen{0, 0, 8388608, 8388608, 0}));
    world.subpixel_sample16(0.25, 0.0);
    EXPECT_EQ(seen, (Seen{16384, 0, 0, 0, 0}));
    context->sampling16.suite = own;
}

TEST_F(EffectWorld, AcquiresASamplingSuiteThatTheContextLacks) {
    host.failures().failSuite(kPFSampling8Suite, 1, PF_Err_INVALID_CALLBACK, 1);
    AEO::InData lacking(&in_data);
    ASSERT_EQ(lacking.sampling8.suite, nullptr);
    headless::World source(1, 1, kU8);
    PF_SampPB params{};
    params.src = source.layer();
    PF_Pixel pixel;
    EXPECT_EQ(AEO::Sampling8::subpixel_sample(lacking, 0, 0, params, pixel), PF_Err_NONE);
    EXPECT_NE(lacking.sampling8.suite, nullptr);
}

TEST_F(EffectWorld, NewOwnsItsPixelsAndDisposesOnce) {
    EXPECT_THAT(callsOf([&] {
                    AEO::NewEffectWorld world(*context, 5, 3, kF32);
                    EXPECT_EQ(world.allocate(2, 2, kU8), PF_Err_NONE);
                    EXPECT_EQ(world.bytesPerPixel, 4);
                    host.failAt(headless::Operation::kDisposeWorld, 1, PF_Interrupt_CANCEL);
                    EXPECT_EQ(world.dispose(), PF_Interrupt_CANCEL);
                    EXPECT_EQ(world.world.data, nullptr);
                }),  // destroyed with a cancel in it
                ElementsAre("AcquireSuite PF World Suite 2", "PF_NewWorld 5 3", "PF_GetPixelFormat",
                            "PF_DisposeWorld", "PF_NewWorld 2 2", "PF_GetPixelFormat",
                            "PF_DisposeWorld", "ReleaseSuite PF World Suite 2"));
}

}  // namespace
