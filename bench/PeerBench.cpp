// SPDX-License-Identifier: Apache-2.0
// The effect beside what a programmer would call instead, on one thread, in turns.
//
//   peer.filter2D/RADIUS   OpenCV's correlation of a float image of four channels with the same
//                          aperture; without an exposure curve on either side
//   peer.fftw/RADIUS       FFTW in double precision on the whole image: padding, separating the
//                          channels, r2c, product, c2r and cropping; without planning and without
//                          the kernel's transform
//   peer.exposure/RADIUS   the effect itself at exposure 10, beside exposure 0
//
// The time is the effect's frame of 1920 x 1080; the counter `ratio` is the median of its processor
// time divided by the other side's, `peer` that side's seconds.

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <algorithm>
#include <complex>
#include <string>
#include <vector>

#include "BenchFrame.h"
#include "InTurns.h"
#include "pipeline/RenderMain.h"

#ifdef ORBEL_HAS_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr std::size_t kChannels = 4;

// A disc whose pixels add up to 1, of 2 reach + 1 pixels a side.
std::vector<float> discOf(double radius, int reach) {
    std::vector<float> disc;
    double sum = 0.0;
    for (int y = -reach; y <= reach; ++y) {
        for (int x = -reach; x <= reach; ++x) {
            const double value = std::clamp(radius - std::hypot(x, y) + 0.5, 0.0, 1.0);
            disc.push_back(static_cast<float>(value));
            sum += value;
        }
    }
    for (float& value : disc) value = static_cast<float>(value / sum);
    return disc;
}

class OurFrame {
public:
    OurFrame(double radius, double exposure)
        : frame_(kWidth, kHeight, PF_PixelFormat_ARGB128, radius, 1) {
        frame_.fixture.info.exposure = exposure;
    }
    void run() {
        StageFixture& fixture = frame_.fixture;
        RenderMainT<1>(&fixture.in_data, fixture.context, frame_.input.layer(),
                       frame_.output.layer(), fixture.info, PF_PixelFormat_ARGB128);
    }
    void setExposure(double exposure) { frame_.fixture.info.exposure = exposure; }
    const headless::World& input() const { return frame_.input; }

private:
    BenchFrame frame_;
};

#ifdef ORBEL_HAS_OPENCV
class FilterFrame {
public:
    explicit FilterFrame(double radius)
        : input_(kHeight, kWidth, CV_32FC4), output_(kHeight, kWidth, CV_32FC4) {
        cv::setNumThreads(1);
        cv::randu(input_, 0.0, 1.0);
        const int reach = static_cast<int>(std::ceil(radius));
        std::vector<float> disc = discOf(radius, reach);
        cv::Mat(2 * reach + 1, 2 * reach + 1, CV_32FC1, disc.data()).copyTo(kernel_);
    }
    void run() {
        cv::filter2D(input_, output_, -1, kernel_, cv::Point(-1, -1), 0, cv::BORDER_REPLICATE);
    }

private:
    cv::Mat input_;
    cv::Mat output_;
    cv::Mat kernel_;
};
#endif

// The smallest number of at least `n` without prime factors above 7.
int smoothSize(int n) {
    const auto smooth = [](int m) {
        for (const int p : {2, 3, 5, 7}) {
            while (m % p == 0) m /= p;
        }
        return m == 1;
    };
    while (!smooth(n)) ++n;
    return n;
}

class FftwFrame {
public:
    explicit FftwFrame(double radius)
        : reach_(static_cast<int>(std::ceil(radius))),
          width_(smoothSize(kWidth + 2 * reach_)),
          height_(smoothSize(kHeight + 2 * reach_)),
          spectrum_(static_cast<std::size_t>(width_ / 2 + 1) * static_cast<std::size_t>(height_)),
          input_(std::size_t{kWidth} * kHeight * kChannels),
          output_(input_.size()),
          kernel_(fftw_alloc_complex(spectrum_)) {
        for (std::size_t c = 0; c < kChannels; ++c) {
            planes_[c] = fftw_alloc_real(2 * spectrum_);
        }
        auto* const real = planes_[0];
        auto* const complex = reinterpret_cast<fftw_complex*>(real);
        forward_ = fftw_plan_dft_r2c_2d(height_, width_, real, complex, FFTW_MEASURE);
        inverse_ = fftw_plan_dft_c2r_2d(height_, width_, complex, real, FFTW_MEASURE);
        Noise noise;
        for (float& value : input_) value = static_cast<float>(noise.unit());
        makeKernel(radius);
    }
    ~FftwFrame() {
        fftw_destroy_plan(forward_);
        fftw_destroy_plan(inverse_);
        for (double* plane : planes_) fftw_free(plane);
        fftw_free(kernel_);
    }
    FftwFrame(const FftwFrame&) = delete;
    FftwFrame& operator=(const FftwFrame&) = delete;

    void run() {
        pad();
        for (double* plane : planes_) {
            auto* const spectrum = reinterpret_cast<fftw_complex*>(plane);
            fftw_execute_dft_r2c(forward_, plane, spectrum);
            multiply(spectrum);
            fftw_execute_dft_c2r(inverse_, spectrum, plane);
        }
        crop();
    }

private:
    std::size_t rowLength() const { return 2 * static_cast<std::size_t>(width_ / 2 + 1); }

    void makeKernel(double radius) {
        double* const plane = planes_[0];
        std::fill_n(plane, 2 * spectrum_, 0.0);
        const std::vector<float> disc = discOf(radius, reach_);
        auto value = disc.begin();
        for (int y = -reach_; y <= reach_; ++y) {
            for (int x = -reach_; x <= reach_; ++x) {
                const auto row = static_cast<std::size_t>((y + height_) % height_);
                const auto col = static_cast<std::size_t>((x + width_) % width_);
                const auto weight = static_cast<double>(*value++);
                plane[row * rowLength() + col] = weight / width_ / height_;
            }
        }
        auto* const spectrum = reinterpret_cast<fftw_complex*>(plane);
        fftw_execute_dft_r2c(forward_, plane, spectrum);
        std::copy_n(&spectrum[0][0], 2 * spectrum_, &kernel_[0][0]);
    }

    // The image with its edge repeated, channel by channel.
    void pad() {
        for (int y = 0; y < height_; ++y) {
            const int fromY = std::clamp(y < kHeight + reach_ ? y : y - height_, 0, kHeight - 1);
            const float* const row = &input_[static_cast<std::size_t>(fromY) * kWidth * kChannels];
            for (int x = 0; x < width_; ++x) {
                const int fromX = std::clamp(x < kWidth + reach_ ? x : x - width_, 0, kWidth - 1);
                const std::size_t to =
                    static_cast<std::size_t>(y) * rowLength() + static_cast<std::size_t>(x);
                for (std::size_t c = 0; c < kChannels; ++c) {
                    planes_[c][to] =
                        static_cast<double>(row[static_cast<std::size_t>(fromX) * kChannels + c]);
                }
            }
        }
    }

    void multiply(fftw_complex* spectrum) const {
        auto* const values = reinterpret_cast<std::complex<double>*>(spectrum);
        const auto* const kernel = reinterpret_cast<const std::complex<double>*>(kernel_);
        for (std::size_t i = 0; i < spectrum_; ++i) {
            const double re =
                values[i].real() * kernel[i].real() - values[i].imag() * kernel[i].imag();
            const double im =
                values[i].real() * kernel[i].imag() + values[i].imag() * kernel[i].real();
            values[i] = {re, im};
        }
    }

    void crop() {
        for (int y = 0; y < kHeight; ++y) {
            float* const row = &output_[static_cast<std::size_t>(y) * kWidth * kChannels];
            const std::size_t from = static_cast<std::size_t>(y) * rowLength();
            for (std::size_t x = 0; x < kWidth; ++x) {
                for (std::size_t c = 0; c < kChannels; ++c) {
                    row[x * kChannels + c] = static_cast<float>(planes_[c][from + x]);
                }
            }
        }
        benchmark::DoNotOptimize(output_.data());
    }

    int reach_;
    int width_;
    int height_;
    std::size_t spectrum_;
    std::vector<float> input_;
    std::vector<float> output_;
    double* planes_[kChannels];
    fftw_complex* kernel_;
    fftw_plan forward_;
    fftw_plan inverse_;
};

#ifdef ORBEL_HAS_OPENCV
void besideFilter2D(benchmark::State& state) {
    const auto radius = static_cast<double>(state.range(0));
    OurFrame ours(radius, 0.0);
    FilterFrame theirs(radius);
    compareInTurns(
        state, [&] { ours.run(); }, [&] { theirs.run(); });
}
#endif

void besideFftw(benchmark::State& state) {
    const auto radius = static_cast<double>(state.range(0));
    OurFrame ours(radius, 0.0);
    FftwFrame theirs(radius);
    compareInTurns(
        state, [&] { ours.run(); }, [&] { theirs.run(); });
}

void besideNoExposure(benchmark::State& state) {
    OurFrame frame(static_cast<double>(state.range(0)), 0.0);
    const auto at = [&](double exposure) {
        return [&frame, exposure] {
            frame.setExposure(exposure);
            frame.run();
        };
    };
    compareInTurns(state, at(10.0), at(0.0));
}

const bool kRegistered = [] {
    const auto add = [](const std::string& name, void (*function)(benchmark::State&)) {
        benchmark::RegisterBenchmark(("peer." + name).c_str(), function)
            ->ArgsProduct({{5, 10, 20, 35, 50, 75, 100}})
            ->Iterations(kTurns)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
#ifdef ORBEL_HAS_OPENCV
    add("filter2D", besideFilter2D);
#endif
    add("fftw", besideFftw);
    add("exposure", besideNoExposure);
    return true;
}();

}  // namespace
