// SPDX-License-Identifier: Apache-2.0
// The transforms, by themselves and against FFTW.
//
//   transform.row.LANES/B      one row of B samples, in the cache
//   transform.block.LANES/B    a block of B x B samples, through the host's iterations, one thread
//   fftw.lanes.LANES/B         FFTW on the same data: interleaved lanes, separate real and
//                              imaginary parts
//   fftw.apart.LANES/B         FFTW on one contiguous complex block for each lane
//   transform.ratio.LANES/B    transform.block and fftw.apart in turns: the time is ours, the
//                              counter `ratio` is our median processor time divided by theirs
//
//   transform.real.LANES/B     real samples there and back, as a block of the effect, beside FFTW's
//                              r2c and c2r, in the same way
//
// LANES "6of10" is six live lanes in a cell of ten. FFTW doesn't vectorise over lanes, so `apart`
// is the layout that suits it.

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <algorithm>
#include <string>
#include <vector>

#include "InTurns.h"
#include "headless/Executor.h"
#include "headless/Host.h"
#include "support/Noise.h"
#include "transform/FFT2DImpl.h"
#include "transform/RealFFT2DImpl.h"
#include "transform/VectorElements.h"

namespace {

// An unscaled transform multiplies its data, which are therefore refilled after this many.
constexpr int kTransformsPerFill = 16;

class OneThreadHost {
public:
    AEO::InData& context() { return context_; }

private:
    static headless::HostOptions options() {
        headless::HostOptions options;
        options.threads = 1;
        return options;
    }

    headless::Host host_{options()};
    PF_InData in_data_ = host_.makeInData();
    AEO::InData context_{&in_data_};
};

// A block in host memory, as the effect has it, or its first rows.
template <class T>
class Block {
public:
    Block(AEO::InData& context, std::size_t size, std::size_t rows)
        : context_(context),
          size_(size),
          data_(context),
          weights_(context, headless::kThreadIndices, size) {
        data_.resize(2 * size * rows);
        fill();
    }

    void fill() { fillWithNoise(&data_[0][0], data_.size() * sizeof(T) / sizeof(double)); }
    void transform() {
        FFT2D<T>(weights_, data_.data(), size_).doFFT2D(context_, false);
        benchmark::DoNotOptimize(data_.data());
    }
    void transformRow() {
        FFT2Dn1<T>{&weights_, data_.data(), size_, false}.iterate(0, 0, 1);
        benchmark::DoNotOptimize(data_.data());
    }

private:
    AEO::InData& context_;
    std::size_t size_;
    AEO::Vector<T> data_;
    FFTWeights weights_;
};

// A block of real samples, forward and back.
template <std::size_t kLanes>
class RealBlockOf {
public:
    RealBlockOf(AEO::InData& context, std::size_t size)
        : context_(context),
          size_(size),
          data_(context),
          weights_(context, headless::kThreadIndices, size) {
        data_.resize(2 * size * size);
        fill();
    }

    void fill() { fillWithNoise(&data_[0][0], data_.size() * kLanes); }
    void transform() {
        RealFFT2D<kLanes> transform(weights_, data_.data(), size_);
        transform.forward(context_);
        transform.inverse(context_, {0, size_});
        benchmark::DoNotOptimize(data_.data());
    }

private:
    AEO::InData& context_;
    std::size_t size_;
    AEO::Vector<ET::vecT<double, kLanes>> data_;
    FFTWeights weights_;
};

// FFTW's for a contiguous real block for each lane, in place.
class FftwRealBlock {
public:
    FftwRealBlock(int lanes, int size)
        : count_(static_cast<std::size_t>(lanes) * static_cast<std::size_t>(size) *
                 static_cast<std::size_t>(size + 2)),
          data_(fftw_alloc_real(count_)) {
        const int dims[2] = {size, size};
        const int rows[2] = {size, size + 2};
        const int halves[2] = {size, size / 2 + 1};
        const int block = size * (size + 2);
        auto* const spectrum = reinterpret_cast<fftw_complex*>(data_);
        forward_ = fftw_plan_many_dft_r2c(2, dims, lanes, data_, rows, 1, block, spectrum, halves,
                                          1, block / 2, FFTW_MEASURE);
        inverse_ = fftw_plan_many_dft_c2r(2, dims, lanes, spectrum, halves, 1, block / 2, data_,
                                          rows, 1, block, FFTW_MEASURE);
        fill();
    }
    ~FftwRealBlock() {
        fftw_destroy_plan(forward_);
        fftw_destroy_plan(inverse_);
        fftw_free(data_);
    }
    FftwRealBlock(const FftwRealBlock&) = delete;
    FftwRealBlock& operator=(const FftwRealBlock&) = delete;

    void fill() { fillWithNoise(data_, count_); }
    void transform() {
        fftw_execute(forward_);
        fftw_execute(inverse_);
        benchmark::DoNotOptimize(data_);
    }

private:
    std::size_t count_;
    double* data_;
    fftw_plan forward_;
    fftw_plan inverse_;
};

enum class Layout { kLanes, kApart };

// FFTW's plan for one block and the memory it works on.
class FftwBlock {
public:
    FftwBlock(Layout layout, int lanes, int size)
        : count_(2 * static_cast<std::size_t>(lanes) * static_cast<std::size_t>(size) *
                 static_cast<std::size_t>(size)),
          data_(fftw_alloc_real(count_)),
          plan_(layout == Layout::kLanes ? planLanes(lanes, size) : planApart(lanes, size)) {
        fill();
    }
    ~FftwBlock() {
        fftw_destroy_plan(plan_);
        fftw_free(data_);
    }
    FftwBlock(const FftwBlock&) = delete;
    FftwBlock& operator=(const FftwBlock&) = delete;

    void fill() { fillWithNoise(data_, count_); }
    void transform() {
        fftw_execute(plan_);
        benchmark::DoNotOptimize(data_);
    }

private:
    fftw_plan planApart(int lanes, int size) {
        const int dims[2] = {size, size};
        auto* const data = reinterpret_cast<fftw_complex*>(data_);
        return fftw_plan_many_dft(2, dims, lanes, data, nullptr, 1, size * size, data, nullptr, 1,
                                  size * size, FFTW_BACKWARD, FFTW_MEASURE);
    }
    fftw_plan planLanes(int lanes, int size) {
        const int sample = 2 * lanes;
        const fftw_iodim dims[2] = {{size, sample * size, sample * size}, {size, sample, sample}};
        const fftw_iodim signals{lanes, 1, 1};
        double* const imaginary = data_ + lanes;
        return fftw_plan_guru_split_dft(2, dims, 1, &signals, data_, imaginary, data_, imaginary,
                                        FFTW_MEASURE);
    }

    std::size_t count_;
    double* data_;
    fftw_plan plan_;
};

// Times `step` on `data`, which is refilled now and then outside the timing.
template <class Data, class Step>
void measure(benchmark::State& state, Data& data, Step step) {
    int done = 0;
    for (auto _ : state) {
        step(data);
        if (++done % kTransformsPerFill == 0) {
            state.PauseTiming();
            data.fill();
            state.ResumeTiming();
        }
    }
}

template <class T>
void row(benchmark::State& state) {
    OneThreadHost host;
    Block<T> block(host.context(), static_cast<std::size_t>(state.range(0)), 1);
    for (auto _ : state) block.transformRow();
}

template <class T>
void block(benchmark::State& state) {
    OneThreadHost host;
    const auto size = static_cast<std::size_t>(state.range(0));
    Block<T> data(host.context(), size, size);
    measure(state, data, [](Block<T>& b) { b.transform(); });
}

void fftw(benchmark::State& state, Layout layout, int lanes) {
    FftwBlock data(layout, lanes, static_cast<int>(state.range(0)));
    measure(state, data, [](FftwBlock& b) { b.transform(); });
}

// Many, since most transforms take less than a millisecond.
constexpr int kTransformTurns = 41;

// A transform there and back multiplies by more than one.
template <class Ours, class Theirs>
void inTurns(benchmark::State& state, Ours& ours, Theirs& theirs) {
    compareInTurns(
        state, [](auto& side) { return processorSeconds(side); }, [&] { ours.transform(); },
        [&] { theirs.transform(); },
        [&](std::size_t turns) {
            if (turns % (kTransformsPerFill / 2) != 0) return;
            ours.fill();
            theirs.fill();
        });
}

template <class T>
void ratio(benchmark::State& state) {
    OneThreadHost host;
    const auto size = static_cast<std::size_t>(state.range(0));
    Block<T> ours(host.context(), size, size);
    FftwBlock theirs(Layout::kApart, static_cast<int>(T::kLanes), static_cast<int>(size));
    inTurns(state, ours, theirs);
}

template <std::size_t kLanes>
void realRatio(benchmark::State& state) {
    OneThreadHost host;
    RealBlockOf<kLanes> ours(host.context(), static_cast<std::size_t>(state.range(0)));
    FftwRealBlock theirs(int{kLanes}, static_cast<int>(state.range(0)));
    inTurns(state, ours, theirs);
}

template <class T>
std::string lanesName() {
    const std::size_t cell = sizeof(T) / sizeof(double);
    const std::string live = std::to_string(T::kLanes);
    return cell == T::kLanes ? live : live + "of" + std::to_string(cell);
}

template <class T>
void registerElement() {
    const std::string lanes = lanesName<T>();
    benchmark::RegisterBenchmark(("transform.row." + lanes).c_str(), row<T>)
        ->RangeMultiplier(2)
        ->Range(64, 1024)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(("transform.block." + lanes).c_str(), block<T>)
        ->RangeMultiplier(2)
        ->Range(64, 1024)
        ->Unit(benchmark::kMillisecond);
}

template <class T>
void registerRatio() {
    benchmark::RegisterBenchmark(("transform.ratio." + lanesName<T>()).c_str(), ratio<T>)
        ->RangeMultiplier(2)
        ->Range(64, 512)
        ->Iterations(kTransformTurns)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

template <std::size_t kLanes>
void registerReal() {
    benchmark::RegisterBenchmark(("transform.real." + std::to_string(kLanes)).c_str(),
                                 realRatio<kLanes>)
        ->RangeMultiplier(2)
        ->Range(64, 512)
        ->Iterations(kTransformTurns)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

void registerFftw(Layout layout, int lanes) {
    const std::string name = layout == Layout::kLanes ? "fftw.lanes." : "fftw.apart.";
    benchmark::RegisterBenchmark((name + std::to_string(lanes)).c_str(), fftw, layout, lanes)
        ->RangeMultiplier(2)
        ->Range(64, 512)
        ->Unit(benchmark::kMillisecond);
}

const bool kRegistered = [] {
    registerElement<ET::vecT<double, 1>>();
    registerElement<ET::vecT<double, 4>>();
    registerElement<ET::StrideVecT<double, 6, 10>>();
    registerElement<ET::vecT<double, 10>>();
    registerElement<ET::vecT<double, 30>>();
    registerElement<ET::vecT<double, 80>>();
    for (const int lanes : {1, 4, 10, 30}) {
        registerFftw(Layout::kLanes, lanes);
        registerFftw(Layout::kApart, lanes);
    }
    registerRatio<ET::vecT<double, 1>>();
    registerRatio<ET::vecT<double, 4>>();
    registerRatio<ET::vecT<double, 10>>();
    registerRatio<ET::vecT<double, 30>>();
    registerRatio<ET::vecT<double, 80>>();
    registerReal<4>();
    registerReal<10>();
    registerReal<30>();
    registerReal<80>();
    return true;
}();

}  // namespace
