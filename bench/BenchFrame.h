// SPDX-License-Identifier: Apache-2.0
#pragma once
// A frame for benchmarks of the pipeline: images of noise, a depth map and the effect's defaults.

#include <string>

#include "headless/Host.h"
#include "support/Noise.h"
#include "support/ShapeParameter.h"
#include "support/StageFixture.h"

// Noise from 0 to 1, opaque, so that no pixel takes a shortcut.
inline void fillWithNoise(headless::World& world) {
    Noise noise;
    const auto next = [&] { return static_cast<float>(noise.unit()); };
    for (int y = 0; y < world.height(); ++y) {
        for (int x = 0; x < world.width(); ++x) world.set(x, y, {1.0F, next(), next(), next()});
    }
}

// Slanted steps, so that all layers and some edges occur.
inline void fillWithDepth(headless::World& world) {
    for (int y = 0; y < world.height(); ++y) {
        for (int x = 0; x < world.width(); ++x) {
            const int step = (x + y / 2) % 256 / 16;
            const float value = static_cast<float>(step) / 15.0F;
            world.set(x, y, {1.0F, value, value, value});
        }
    }
}

inline std::string nameOf(PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB128) return "float";
    return std::to_string(headless::bitsOfFormat(format)) + "bit";
}

// The images and parameters of one frame, on a host of its own: only one such object at a time.
struct BenchFrame {
    BenchFrame(int width, int height, PF_PixelFormat format, double radius, int threads)
        : host({.threads = threads}),
          input(width, height, format),
          output(width, height, format),
          depth(width, height, PF_PixelFormat_ARGB32),
          fixture(host, depth.record()) {
        declareShapeParameter(host, nullptr);
        fillWithNoise(input);
        fillWithDepth(depth);
        fixture.show(input, output);
        fixture.info.radius = radius + 0.5;
        fixture.info.exposure = 10.0;
        fixture.info.repeatEdge = true;
    }

    headless::Host host;
    headless::World input;
    headless::World output;
    headless::World depth;
    StageFixture fixture;
};
