// SPDX-License-Identifier: Apache-2.0
#pragma once
// Small pictures with depth, and the effect to render them.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "headless/Effect.h"
#include "occlusion/Render.h"

namespace test {

using Rgba = std::array<double, 4>;  // straight

inline std::shared_ptr<headless::World> makeFloatWorld(int width, int height) {
    return std::make_shared<headless::World>(width, height, PF_PixelFormat_ARGB128);
}

// Calls `value(x, y)` for the Rgba of each pixel.
template <class Value>
std::shared_ptr<headless::World> paint(int width, int height, Value value) {
    auto world = makeFloatWorld(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Rgba rgba = value(x, y);
            world->row<PF_PixelFloat>(y)[x] = {.alpha = static_cast<float>(rgba[3]),
                                               .red = static_cast<float>(rgba[0]),
                                               .green = static_cast<float>(rgba[1]),
                                               .blue = static_cast<float>(rgba[2])};
        }
    }
    return world;
}

// Calls `nearness(x, y)` for each pixel of a map.
template <class Nearness>
std::shared_ptr<headless::World> paintMap(int width, int height, Nearness nearness) {
    return paint(width, height, [&](int x, int y) {
        const double value = nearness(x, y);
        return Rgba{value, value, value, 1.0};
    });
}

inline Rgba rgbaAt(const headless::World& world, int x, int y) {
    const PF_PixelFloat& p = world.row<PF_PixelFloat>(y)[x];
    return {static_cast<double>(p.red), static_cast<double>(p.green), static_cast<double>(p.blue),
            static_cast<double>(p.alpha)};
}

// The effect in its bundle, with a round aperture and no exposure curve.
class Stage : public testing::Test {
protected:
    Stage() : effect(host, ORBEL_BUNDLE) {
        effect.setUp();
        set("Roundness", 1.0);
        set("Exposure", 0.0);
        set("Resolution", 16.0);
        set("Focal Distance", 0.5);
        set("Composite Mode", 2.0);
    }

    void set(const char* label, double value) { effect.parameters().set(label, value); }
    void setMap(const std::shared_ptr<headless::World>& map) {
        effect.parameters().setLayer(effect.parameters().find("Layer"), map);
    }

    std::shared_ptr<headless::World> plain(const std::shared_ptr<headless::World>& picture) {
        headless::FrameRequest request;
        request.input = picture;
        request.bits = 32;
        const headless::FrameResult result = effect.renderFrame(request);
        EXPECT_EQ(result.status, 0);
        return result.output;
    }
    // A blur of the whole picture by one radius.
    std::shared_ptr<headless::World> flat(const std::shared_ptr<headless::World>& picture) {
        setMap(nullptr);
        return plain(picture);
    }
    occlusion::Result occluded(const std::shared_ptr<headless::World>& picture,
                               const std::shared_ptr<headless::World>& map,
                               const occlusion::Options& options = {}) {
        setMap(map);
        headless::FrameRequest request;
        request.input = picture;
        request.bits = 32;
        occlusion::Result result =
            occlusion::render(host, effect, request, effect.parameters(), options);
        EXPECT_EQ(result.frame.status, 0);
        EXPECT_TRUE(host.accounts().clean()) << host.accounts().describe();
        return result;
    }

    headless::Host host;
    headless::Effect effect;
};

// The root of the mean squared difference of colours, where `counts(x, y)`.
template <class Counts>
double difference(const headless::World& a, const headless::World& b, Counts counts) {
    double sum = 0.0;
    int pixels = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (!counts(x, y)) continue;
            ++pixels;
            for (std::size_t c = 0; c < 4; ++c) {
                sum += std::pow(rgbaAt(a, x, y)[c] - rgbaAt(b, x, y)[c], 2.0);
            }
        }
    }
    return std::sqrt(sum / pixels);
}

inline double difference(const headless::World& a, const headless::World& b) {
    return difference(a, b, [](int, int) { return true; });
}

// The largest difference of a channel.
template <class Counts>
double largestDifference(const headless::World& a, const headless::World& b, Counts counts) {
    double largest = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (!counts(x, y)) continue;
            for (std::size_t c = 0; c < 4; ++c) {
                const double off = std::fabs(rgbaAt(a, x, y)[c] - rgbaAt(b, x, y)[c]);
                largest = std::isnan(off) ? HUGE_VAL : std::max(largest, off);
            }
        }
    }
    return largest;
}

}  // namespace test
