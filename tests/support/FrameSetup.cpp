// SPDX-License-Identifier: Apache-2.0
#include "support/FrameSetup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "support/Noise.h"
#include "trial/Pictures.h"

namespace frame {
namespace {

double channelOf(const PF_PixelFloat& p, int c) {
    return std::array{p.alpha, p.red, p.green, p.blue}[static_cast<std::size_t>(c)];
}

}  // namespace

BlurEffect::BlurEffect(int threads)
    : host({.threads = threads}), effect(host, ORBEL_BUNDLE), shape(trial::shapePicture(12, 32)) {
    effect.setUp();
    set("Blur Radius", 5.5);
    setLayer("Custom Blur Shape", shape);
    effect.parameters().setChoice(effect.parameters().find("Custom Layer Channel"), "Alpha");
    set("Exposure", 2.0);
    set("Resolution", 3);  // matters only with a depth map
}

void BlurEffect::useDepth(std::shared_ptr<const headless::World> map, int layers) {
    setLayer("Depth Map/Layer", std::move(map));
    effect.parameters().setChoice(effect.parameters().find("Depth Map/Channel"), "Red");
    set("Resolution", layers);
}

std::shared_ptr<headless::World> noisePicture(int width, int height, int bits, unsigned seed) {
    auto world = std::make_shared<headless::World>(width, height, headless::formatOfBits(bits));
    Noise noise(seed);
    const auto uniform = [&] { return static_cast<float>(noise.unit()); };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float alpha = noise.upTo(1) == 0 ? 1.0F : uniform();
            const float light = noise.upTo(49) == 0 ? 1.0F : 0.4F;
            world->set(x, y, {alpha, light * uniform(), light * uniform(), light});
        }
    }
    return world;
}

headless::FrameRequest requestFor(std::shared_ptr<const headless::World> input, int bits) {
    headless::FrameRequest request;
    request.input = std::move(input);
    request.bits = bits;
    return request;
}

void expectPixels(const headless::FrameResult& result, const reference::Scene& scene,
                  double relative) {
    ASSERT_EQ(result.status, 0);
    const headless::World& output = *result.output;
    const int bits = headless::bitsOfFormat(output.format());
    const double step = bits == 32 ? relative : 1.001 / (bits == 8 ? PF_MAX_CHAN8 : PF_MAX_CHAN16);
    const double top = bits == 32 ? HUGE_VAL : 1.0;
    const auto expected = reference::render(scene, result.resultRect);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const int x = static_cast<int>(i) % output.width();
        const int y = static_cast<int>(i) / output.width();
        const PF_PixelFloat got = output.get(x, y);
        const reference::Pixel& want = expected[i];
        const double wanted[] = {want.alpha, want.red, want.green, want.blue};
        // Where alpha is close to 0, a colour is the quotient of two rounding errors.
        for (int c = 0; c < (want.alpha > 1e-6 ? 4 : 1); ++c) {
            const double clamped = std::min(wanted[c], top);
            ASSERT_NEAR(channelOf(got, c), clamped, step * std::max(1.0, std::fabs(clamped)))
                << "pixel " << x << ", " << y << " channel " << c;
        }
    }
}

bool sameBits(const headless::World& a, const headless::World& b) {
    if (a.format() != b.format() || a.width() != b.width() || a.height() != b.height())
        return false;
    const auto bytes = static_cast<std::size_t>(a.width()) *
                       static_cast<std::size_t>(headless::bytesPerPixel(a.format()));
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.bytesOfRow(y), b.bytesOfRow(y), bytes) != 0) return false;
    }
    return true;
}

}  // namespace frame
