// SPDX-License-Identifier: Apache-2.0
// This build's bundle beside another one, named by the environment variable ORBEL_OTHER_BUNDLE, in
// turns on one thread; without it there is nothing to measure.
//
//   version.noise.LAYERS.MODE/RADIUS    every depth layer is in use in every block
//   version.street.LAYERS.MODE/RADIUS   the street scene, in even steps of 1/distance
//
// 1920 x 1080, float, exposure 10, edge leak removed. The counter `ratio` is our median processor
// time divided by the other's.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <string>

#include "InTurns.h"
#include "headless/Effect.h"
#include "headless/Host.h"
#include "scene/Scene.h"
#include "support/Noise.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

using Picture = std::shared_ptr<headless::World>;

struct Images {
    Picture input;
    Picture depth;
};

Picture floatPicture() {
    return std::make_shared<headless::World>(kWidth, kHeight, PF_PixelFormat_ARGB128);
}

Images noise() {
    Images images{floatPicture(), floatPicture()};
    Noise noise;
    const auto next = [&] { return static_cast<float>(noise.unit()); };
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            images.input->set(x, y, {1.0F, next(), next(), next()});
            const float depth = next();
            images.depth->set(x, y, {1.0F, depth, depth, depth});
        }
    }
    return images;
}

// The map is 1 at the nearest place and 0 at infinity.
Images street() {
    const std::atomic<bool> never{false};
    const scene::Scene scene = scene::makeScene(kWidth, kHeight, never);
    const float nearest = *std::min_element(scene.distances.begin(), scene.distances.end());
    Images images{floatPicture(), floatPicture()};
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const auto pixel = static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x);
            const float* const c = &scene.colours[3 * pixel];
            images.input->set(
                x, y, {1.0F, std::min(c[0], 1.0F), std::min(c[1], 1.0F), std::min(c[2], 1.0F)});
            const float depth = nearest / scene.distances[pixel];
            images.depth->set(x, y, {1.0F, depth, depth, depth});
        }
    }
    return images;
}

class Side {
public:
    Side(headless::Host& host, const std::string& bundle, const Images& images, double radius,
         int layers, const char* mode)
        : effect_(host, bundle) {
        effect_.setUp();
        headless::ParameterSet& parameters = effect_.parameters();
        parameters.set("Blur Radius", radius);
        parameters.set("Resolution", layers);
        parameters.setLayer(parameters.find("Depth Map/Layer"), images.depth);
        parameters.setChoice(parameters.find("Composite Mode"), mode);
        parameters.set("Remove Edge Leak", 1.0);
        request_.input = images.input;
        request_.bits = 32;
    }
    void operator()() { benchmark::DoNotOptimize(effect_.renderFrame(request_)); }

private:
    headless::Effect effect_;
    headless::FrameRequest request_;
};

void compare(benchmark::State& state, const std::string& other, const Images& images, int layers,
             const char* mode) {
    headless::Host host({.threads = 1});
    const auto radius = static_cast<double>(state.range(0));
    Side ours(host, ORBEL_BUNDLE, images, radius, layers, mode);
    Side theirs(host, other, images, radius, layers, mode);
    compareInTurns(state, ours, theirs);
}

void registerImages(const std::string& name, const std::string& other, const Images& images) {
    for (const int layers : {6, 16}) {
        for (const char* mode : {"Normal", "Split"}) {
            benchmark::RegisterBenchmark(
                ("version." + name + "." + std::to_string(layers) + "." + mode).c_str(),
                [=](benchmark::State& state) { compare(state, other, images, layers, mode); })
                ->Arg(20)
                ->Arg(50)
                ->Iterations(kTurns)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    const char* const other = std::getenv("ORBEL_OTHER_BUNDLE");
    if (other) {
        registerImages("noise", other, noise());
        registerImages("street", other, street());
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
