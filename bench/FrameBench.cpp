// SPDX-License-Identifier: Apache-2.0
// Whole frames of 1920 x 1080 with the default exposure of 10.
//
//   frame.FORMAT/RADIUS/THREADS        without a depth map
//   frame.N.MODE/RADIUS                N depth layers, float, on two threads, edge detection on
//   frame.parts.N.MODE/RADIUS          the same on one thread, part by part
//
// Counters: `MB` is the peak of host memory, images excluded. For the parts, `kernels`, `bank`
// (their transform), `depth` (with its edges), `store`, `forward`, `multiply`, `inverse` and
// `unpack` are seconds of processor time; `rest` is the share of the frame that is neither
// transform nor multiplication, `store_unpack` the share of these two stages.

#include <benchmark/benchmark.h>

#include <ctime>
#include <string>

#include "BenchFrame.h"
#include "pipeline/BlockGeometry.h"
#include "pipeline/BlockStages.h"
#include "pipeline/KernelBuild.h"
#include "pipeline/RenderMain.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

double megabytes(const BenchFrame& frame) {
    return static_cast<double>(frame.host.memory().peak) / 1048576.0;
}

template <std::size_t N>
void render(benchmark::State& state, BenchFrame& frame, PF_PixelFormat format) {
    StageFixture& fixture = frame.fixture;
    frame.host.resetPeak();
    for (auto _ : state) {
        const int err = RenderMainT<N>(&fixture.in_data, fixture.context, frame.input.layer(),
                                       frame.output.layer(), fixture.info, format);
        if (err) state.SkipWithError("the render failed");
    }
    state.counters["MB"] = megabytes(frame);
}

void flat(benchmark::State& state, PF_PixelFormat format) {
    BenchFrame frame(kWidth, kHeight, format, static_cast<double>(state.range(0)),
                     static_cast<int>(state.range(1)));
    render<1>(state, frame, format);
}

template <std::size_t N>
void layered(benchmark::State& state, std::int32_t mode) {
    const PF_PixelFormat format = PF_PixelFormat_ARGB128;
    BenchFrame frame(kWidth, kHeight, format, static_cast<double>(state.range(0)), 2);
    frame.fixture.info.compositeMode = mode;
    frame.fixture.info.edgeLeak = 1.0;
    render<N>(state, frame, format);
}

// Processor time of each part in seconds, added up over the blocks.
struct Parts {
    double depth = 0.0;
    double store = 0.0;
    double forward = 0.0;
    double multiply = 0.0;
    double inverse = 0.0;
    double unpack = 0.0;
    double kernels = 0.0;
    double bankTransform = 0.0;
    double total = 0.0;
};

template <class Part>
void timed(double& seconds, Part&& part) {
    const std::clock_t begin = std::clock();
    benchmark::DoNotOptimize(part());
    seconds += static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

template <std::size_t N>
int runParts(BenchFrame& frame, PF_PixelFormat format, Parts& parts) {
    PF_InData& in_data = frame.fixture.in_data;
    AEO::InData& context = frame.fixture.context;
    const RenderInfo& info = frame.fixture.info;
    const std::size_t size = Filter<N>::GetFilterSize(info.radius);
    Filter<N> filter(context, size);
    AEO::Vector<typename BlockLayout<N>::Element> block(context);
    block.resize(2 * size * size);
    FFTWeights weights(context, headless::kThreadIndices, size);
    const PF_WorldSuite2* worlds = info.suites->PFWorldSuite2();
    timed(parts.kernels,
          [&] { return KernelBuild<N>(&in_data, context, info, worlds, filter).run(); });
    timed(parts.bankTransform,
          [&] { return RealFFT2D<N>(weights, filter.data(), size).forward(context); });

    BlockStages<N> stages(context, info, *frame.input.layer(), *frame.output.layer(), format,
                          filter, weights, block);
    const BlockGeometry geometry(size, info.radius, kWidth, kHeight);
    for (int b = 0; b < geometry.count(); ++b) {
        const iRect tile = geometry.tile(b);
        const iRect rect = geometry.block(tile);
        BlockDepth map(context);
        timed(parts.depth, [&] { return stages.analyse(rect, map); });
        timed(parts.store, [&] { return stages.store(rect, map); });
        timed(parts.forward, [&] { return stages.forward(); });
        timed(parts.multiply, [&] { return stages.multiply(); });
        timed(parts.inverse, [&] { return stages.inverse(tile, rect); });
        timed(parts.unpack, [&] { return stages.unpack(tile, rect); });
    }
    return geometry.count();
}

template <std::size_t N>
void partwise(benchmark::State& state, std::int32_t mode) {
    const PF_PixelFormat format = PF_PixelFormat_ARGB128;
    BenchFrame frame(kWidth, kHeight, format, static_cast<double>(state.range(0)), 1);
    frame.fixture.info.compositeMode = mode;
    frame.fixture.info.edgeLeak = 1.0;
    Parts parts;
    for (auto _ : state) {
        timed(parts.total, [&] { return runParts<N>(frame, format, parts); });
    }
    const double spectral = parts.forward + parts.multiply + parts.inverse + parts.bankTransform;
    const auto perFrame = [&](double seconds) {
        return benchmark::Counter(seconds, benchmark::Counter::kAvgIterations);
    };
    state.counters["depth"] = perFrame(parts.depth);
    state.counters["store"] = perFrame(parts.store);
    state.counters["forward"] = perFrame(parts.forward);
    state.counters["multiply"] = perFrame(parts.multiply);
    state.counters["inverse"] = perFrame(parts.inverse);
    state.counters["unpack"] = perFrame(parts.unpack);
    state.counters["kernels"] = perFrame(parts.kernels);
    state.counters["bank"] = perFrame(parts.bankTransform);
    state.counters["rest"] = 1.0 - spectral / parts.total;
    state.counters["store_unpack"] = (parts.store + parts.unpack) / parts.total;
}

void registerFormat(PF_PixelFormat format) {
    benchmark::RegisterBenchmark(("frame." + nameOf(format)).c_str(), flat, format)
        ->ArgsProduct({{20, 50, 100}, {1, 2}})
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

template <std::size_t N>
void registerMode(const std::string& name, std::int32_t mode) {
    const std::string suffix = std::to_string(N) + "." + name;
    const auto add = [](benchmark::internal::Benchmark* bench) {
        bench->Arg(20)->Arg(50)->Unit(benchmark::kMillisecond)->UseRealTime();
    };
    add(benchmark::RegisterBenchmark(("frame.parts." + suffix).c_str(), partwise<N>, mode));
    if (N >= 2) add(benchmark::RegisterBenchmark(("frame." + suffix).c_str(), layered<N>, mode));
}

template <std::size_t N>
void registerLayers() {
    registerMode<N>("normal", kCompositeNormal);
    registerMode<N>("split", kCompositeSplit);
}

const bool kRegistered = [] {
    registerFormat(PF_PixelFormat_ARGB32);
    registerFormat(PF_PixelFormat_ARGB64);
    registerFormat(PF_PixelFormat_ARGB128);
    registerLayers<1>();
    registerLayers<2>();
    registerLayers<6>();
    registerLayers<16>();
    return true;
}();

}  // namespace
