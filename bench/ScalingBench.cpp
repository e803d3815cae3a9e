// SPDX-License-Identifier: Apache-2.0
// How a frame's time grows with its size and falls with the number of workers.
//
//   scaling.workers.LAYERS/RADIUS   two workers beside one, by the clock
//   scaling.arithmetic              the same for arithmetic in registers, on two threads beside one
//   scaling.copying                 the same for copying memory
//   scaling.size/RADIUS/KILOPIXELS  a frame without depth, one worker; `ns` is the time per pixel
//                                   of its blocks, aprons included

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "BenchFrame.h"
#include "InTurns.h"
#include "kernels/Filter.h"
#include "pipeline/BlockGeometry.h"
#include "pipeline/RenderMain.h"

namespace {

template <std::size_t N>
void renderOnce(BenchFrame& frame) {
    StageFixture& fixture = frame.fixture;
    RenderMainT<N>(&fixture.in_data, fixture.context, frame.input.layer(), frame.output.layer(),
                   fixture.info, PF_PixelFormat_ARGB128);
}

// Only one host exists at a time, so each turn makes its own; the frame before the one that is
// measured wakes the workers.
template <std::size_t N>
double frameSeconds(double radius, int workers) {
    BenchFrame frame(1920, 1080, PF_PixelFormat_ARGB128, radius, workers);
    renderOnce<N>(frame);
    return clockSeconds([&] { renderOnce<N>(frame); });
}

template <std::size_t N>
void workers(benchmark::State& state) {
    const auto radius = static_cast<double>(state.range(0));
    compareInTurns(
        state, [&](int count) { return frameSeconds<N>(radius, count); }, 2, 1, [](std::size_t) {});
}

// `pieces` of work, on one thread or shared between two.
template <class Work>
double sharedSeconds(int threads, int pieces, Work&& work) {
    return clockSeconds([&] {
        std::vector<std::thread> others;
        const auto share = [&](int t) {
            for (int i = t; i < pieces; i += threads) work(i);
        };
        for (int t = 1; t < threads; ++t) others.emplace_back(share, t);
        share(0);
        for (std::thread& other : others) other.join();
    });
}

void arithmetic(benchmark::State& state) {
    const auto work = [](int) {
        double x = 1.0, y = 0.5, z = 0.25, w = 0.125;
        for (int i = 0; i < 5'000'000; ++i) {
            x = x * 0.999 + 0.1;
            y = y * 0.998 + 0.1;
            z = z * 0.997 + 0.1;
            w = w * 0.996 + 0.1;
        }
        benchmark::DoNotOptimize(x + y + z + w);
    };
    compareInTurns(
        state, [&](int threads) { return sharedSeconds(threads, 8, work); }, 2, 1,
        [](std::size_t) {});
}

void copying(benchmark::State& state) {
    constexpr std::size_t kBytes = std::size_t{64} << 20;
    std::vector<char> from(8 * kBytes, 1), to(8 * kBytes);
    const auto work = [&](int i) {
        const std::size_t at = kBytes * static_cast<std::size_t>(i);
        std::memcpy(&to[at], &from[at], kBytes);
    };
    compareInTurns(
        state, [&](int threads) { return sharedSeconds(threads, 8, work); }, 2, 1,
        [](std::size_t) {});
}

// Frames of 16:9.
void size(benchmark::State& state) {
    const auto radius = static_cast<double>(state.range(0));
    const double pixels = 1000.0 * static_cast<double>(state.range(1));
    const auto height = static_cast<int>(std::lround(std::sqrt(pixels * 9.0 / 16.0)));
    const auto width = static_cast<int>(std::lround(pixels / height));
    BenchFrame frame(width, height, PF_PixelFormat_ARGB128, radius, 1);
    const double reach = frame.fixture.info.radius;
    const std::size_t edge = Filter<1>::GetFilterSize(reach);
    const int blocks = BlockGeometry(edge, reach, width, height).count();
    std::vector<double> seconds;
    for (auto _ : state) {
        seconds.push_back(processorSeconds([&] { renderOnce<1>(frame); }));
        state.SetIterationTime(seconds.back());
    }
    const double blockPixels = static_cast<double>(edge) * static_cast<double>(edge) * blocks;
    state.counters["ns"] = 1e9 * median(seconds) / blockPixels;
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, void (*function)(benchmark::State&)) {
        return benchmark::RegisterBenchmark(("scaling." + name).c_str(), function)
            ->Iterations(kTurns)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    add("workers.1", workers<1>)->Arg(20)->Arg(50);
    add("workers.6", workers<6>)->Arg(20)->Arg(50);
    add("arithmetic", arithmetic);
    add("copying", copying);
    add("size", size)->ArgsProduct({{20, 50, 100}, {500, 2074, 8294, 33178}});
    return true;
}();

}  // namespace
