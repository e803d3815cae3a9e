// SPDX-License-Identifier: Apache-2.0
// Blurs an array of floats with one point of light in its centre. The point takes the shape of the
// aperture, which is printed in the terminal.
#include <cstdio>
#include <exception>
#include <memory>
#include <vector>

#include "headless/Effect.h"
#include "headless/Host.h"
#include "headless/World.h"

int main() try {
    constexpr int kSize = 33;
    std::vector<float> image(kSize * kSize);
    image[kSize * kSize / 2] = 1;

    const auto input = std::make_shared<headless::World>(kSize, kSize, PF_PixelFormat_ARGB128);
    for (int i = 0; i < kSize * kSize; ++i) {
        input->set(i % kSize, i / kSize, {1, image[i], image[i], image[i]});
    }

    headless::Host host;
    headless::Effect effect(host, ORBEL_BUNDLE);
    effect.setUp();
    effect.parameters().set("Blur Radius", 12);
    effect.parameters().set("Exposure", 0);

    headless::FrameRequest request;
    request.input = input;
    request.bits = 32;
    const headless::FrameResult frame = effect.renderFrame(request);
    if (frame.status != PF_Err_NONE || !frame.output) {
        throw headless::EffectError("the frame failed: " + frame.message);
    }

    double light = 0;
    for (int i = 0; i < kSize * kSize; ++i) {
        image[i] = frame.output->get(i % kSize, i / kSize).red;
        light += image[i];
        std::printf("%s%s", image[i] > 1e-3F ? "##" : "  ", i % kSize == kSize - 1 ? "\n" : "");
    }
    std::printf("The light of one point, after the blur: %.3f\n", light);
} catch (const std::exception& error) {
    std::fprintf(stderr, "blur-array: %s\n", error.what());
    return 1;
}
