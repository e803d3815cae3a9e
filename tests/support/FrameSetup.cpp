#include "support/FrameSetup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>

namespace frame {
namespace {

float uniform(std::mt19937& random) {
    return static_cast<float>(random() % 4096) / 4095.0F;
}

double channelOf(const PF_PixelFloat& p, int c) {
    return std::array{p.alpha, p.red, p.green, p.blue}[static_cast<std::size_t>(c)];
}

}  // namespace

BlurEffect::BlurEffect(int threads)
    : host({.threads = threads}), effect(host, ORBEL_BUNDLE), shape(shapePicture()) {
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
    std::mt19937 random(seed);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float alpha = random() % 2 == 0 ? 1.0F : uniform(random);
            const float light = random() % 50 == 0 ? 1.0F : 0.4F;
            world->set(x, y, {alpha, light * uniform(random), light * uniform(random), light});
        }
    }
    return world;
}

std::shared_ptr<headless::World> depthPicture(int width, int height) {
    auto world = std::make_shared<headless::World>(width, height, PF_PixelFormat_ARGB128);
    std::mt19937 random(7);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float ramp = 0.6F * static_cast<float>(x) / static_cast<float>(width);
            const float step = y > height / 2 ? 0.3F : 0.0F;
            const float noise = 0.1F * uniform(random);
            world->set(x, y, {1.0F, ramp + step + noise, 0.1F, 0.2F});
        }
    }
    return world;
}

std::shared_ptr<headless::World> shapePicture() {
    constexpr int kSide = 12;
    auto world = std::make_shared<headless::World>(kSide, kSide, PF_PixelFormat_ARGB128);
    for (int y = 1; y < kSide - 1; ++y) {
        for (int x = 1; x < kSide - 1; ++x) {
            const float weight = static_cast<float>(3 * x + x * y) / 140.0F;
            world->set(x, y, {y < 4 && x < 5 ? 0.0F : weight, 1, 1, 1});
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
    const double step = bits == 32 ? relative : 1.001 / (bits == 8 ? 255 : 32768);
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
    const auto bytes = static_cast<std::size_t>(a.width() * headless::bytesPerPixel(a.format()));
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.bytesOfRow(y), b.bytesOfRow(y), bytes) != 0) return false;
    }
    return true;
}

}  // namespace frame
