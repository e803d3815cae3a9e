// SPDX-License-Identifier: Apache-2.0
// Each stage by itself on one thread, through the host's iteration, over one block of 256 x 256.
//
//   stage.store.N.FORMAT        with the exposure curve on every pixel; Split from N = 2 on
//   stage.multiply.N.MODE
//   stage.unpack.N.FORMAT       the whole block as one tile
//   stage.kernels.N             sampling and normalising the generated aperture
//   stage.shape                 drawing the aperture, 256 x 256
//
// N is the number of depth layers. The counter `per_pixel` is the processor time of one item.

#include <benchmark/benchmark.h>

#include <string>

#include "BenchFrame.h"
#include "pipeline/KernelBuild.h"
#include "pipeline/MultiplyReal.h"
#include "pipeline/StoreBuffer.h"
#include "pipeline/UnpackBuffer.h"

namespace {

constexpr std::size_t kSize = 256;
constexpr int kSide = static_cast<int>(kSize);
constexpr int kArea = kSide * kSide;
constexpr double kRadius = 50.0;

// The buffers of one block with N layers.
template <std::size_t N>
struct BenchBlock {
    explicit BenchBlock(PF_PixelFormat format)
        : frame(kSide, kSide, format, kRadius, 1),
          filter(frame.fixture.context, kSize),
          block(frame.fixture.context),
          depth(frame.fixture.context),
          edge(frame.fixture.context) {
        block.resize(2 * kSize * kSize);
        depth.resize(kSize * kSize);
        for (std::size_t i = 0; i < depth.size(); ++i) depth[i] = static_cast<float>(i % 97) / 96;
        frame.fixture.info.compositeMode = kCompositeSplit;
    }

    template <class Pixel>
    StoreBuffer<Pixel, N> storing() {
        return StoreBuffer<Pixel, N>(frame.fixture.info, *frame.input.layer(), depth, edge, rect,
                                     block);
    }

    template <class Stage>
    void run(benchmark::State& state, Stage&& stage) {
        for (auto _ : state) {
            AEO::Iterator::IterationT(frame.fixture.context, stage, kArea);
            benchmark::ClobberMemory();
        }
        using benchmark::Counter;
        state.counters["per_pixel"] =
            Counter(kArea, Counter::kIsIterationInvariantRate | Counter::kInvert);
    }

    BenchFrame frame;
    Filter<N> filter;
    AEO::Vector<typename BlockLayout<N>::Element> block;
    AEO::Vector<float> depth;
    AEO::Vector<float> edge;
    iRect rect{0, 0, kSide, kSide};
};

template <std::size_t N, class Pixel>
void store(benchmark::State& state, PF_PixelFormat format) {
    BenchBlock<N> bench(format);
    bench.run(state, bench.template storing<Pixel>());
}

template <std::size_t N, class Pixel>
void unpack(benchmark::State& state, PF_PixelFormat format) {
    BenchBlock<N> bench(format);
    auto storing = bench.template storing<Pixel>();
    for (int i = 0; i < kArea; ++i) storing.iterate(0, i, kArea);
    bench.run(state, UnpackBuffer<Pixel, N>(bench.frame.fixture.info, bench.filter, bench.block,
                                            bench.rect, bench.rect, *bench.frame.output.layer()));
}

// The bank and the block are zero, which takes as long as other values.
template <std::size_t N, int K>
void multiply(benchmark::State& state) {
    BenchBlock<N> bench(PF_PixelFormat_ARGB128);
    constexpr LaneGroups kAll = allGroups(BlockLayout<N>::kGroups);
    bench.run(state, MultiplyReal<N, K>(bench.filter, bench.block, kAll));
}

template <std::size_t N>
void kernels(benchmark::State& state) {
    BenchFrame frame(kSide, kSide, PF_PixelFormat_ARGB128, kRadius, 1);
    AEGP_SuiteHandler suites(frame.fixture.in_data.pica_basicP);
    Filter<N> filter(frame.fixture.context, kSize);
    for (auto _ : state) {
        KernelBuild<N>(&frame.fixture.in_data, frame.fixture.context, frame.fixture.info,
                       suites.PFWorldSuite2(), filter)
            .run();
    }
}

void shape(benchmark::State& state) {
    BenchFrame frame(kSide, kSide, PF_PixelFormat_ARGB128, kRadius, 1);
    AEO::NewEffectWorld image(frame.fixture.context, kSide, kSide, AEO::PixelFormat::kF32);
    GenFilter generator(frame.fixture.context, &frame.fixture.in_data, frame.fixture.info, image);
    for (auto _ : state) {
        AEO::Iterator::IterationT(frame.fixture.context, generator, kArea);
    }
}

template <std::size_t N, class Pixel>
void registerFormat(PF_PixelFormat format) {
    const std::string suffix = std::to_string(N) + "." + nameOf(format);
    benchmark::RegisterBenchmark(("stage.store." + suffix).c_str(), store<N, Pixel>, format);
    benchmark::RegisterBenchmark(("stage.unpack." + suffix).c_str(), unpack<N, Pixel>, format);
}

template <std::size_t N>
void registerLayers() {
    registerFormat<N, PF_Pixel>(PF_PixelFormat_ARGB32);
    registerFormat<N, PF_Pixel16>(PF_PixelFormat_ARGB64);
    registerFormat<N, PF_PixelFloat>(PF_PixelFormat_ARGB128);
    const std::string n = std::to_string(N);
    benchmark::RegisterBenchmark(("stage.multiply." + n + ".normal").c_str(), multiply<N, 1>);
    benchmark::RegisterBenchmark(("stage.multiply." + n + ".split").c_str(), multiply<N, 2>);
    benchmark::RegisterBenchmark(("stage.kernels." + n).c_str(), kernels<N>)
        ->Unit(benchmark::kMillisecond);
}

const bool kRegistered = [] {
    benchmark::RegisterBenchmark("stage.shape", shape)->Unit(benchmark::kMillisecond);
    registerLayers<1>();
    registerLayers<2>();
    registerLayers<6>();
    registerLayers<16>();
    return true;
}();

}  // namespace
