// SPDX-License-Identifier: Apache-2.0
#pragma once
// The arithmetic of the sampling suites.
//
// Positions and radii are 16.16. Pixel i has its centre at coordinate i, so it covers i - 0.5 to
// i + 0.5. Outside the image alpha is zero. Colours are straight, so they are weighted by alpha.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "platform/Fixed.h"
#include "platform/Worlds.h"

namespace headless {

// Sums of alpha and of the colours multiplied by alpha.
template <class Number>
struct PixelSum {
    Number alpha = 0;
    Number red = 0;
    Number green = 0;
    Number blue = 0;

    template <class Pixel>
    void add(const Pixel& p) {
        const auto a = static_cast<Number>(p.alpha);
        alpha += a;
        red += a * static_cast<Number>(p.red);
        green += a * static_cast<Number>(p.green);
        blue += a * static_cast<Number>(p.blue);
    }
    template <class Pixel>
    void add(const Pixel& p, Number weight) {
        const Number a = weight * static_cast<Number>(p.alpha);
        alpha += a;
        red += a * static_cast<Number>(p.red);
        green += a * static_cast<Number>(p.green);
        blue += a * static_cast<Number>(p.blue);
    }
    template <class Other>
    void addSum(const PixelSum<Other>& other, Number weight) {
        alpha += weight * static_cast<Number>(other.alpha);
        red += weight * static_cast<Number>(other.red);
        green += weight * static_cast<Number>(other.green);
        blue += weight * static_cast<Number>(other.blue);
    }
};

// Integer channels are summed in integers, which is exact and fast.
template <class Pixel>
using RunNumber = std::conditional_t<std::is_same_v<Pixel, PF_PixelFloat>, double, std::uint64_t>;

// The pixels along one axis that an interval covers, within the image.
struct Coverage {
    std::int64_t begin;  // of the interval, 16.16 from the outer edge of pixel 0
    std::int64_t end;
    std::int64_t first;  // pixels first to last; none if last < first
    std::int64_t last;

    Coverage(PF_Fixed center, PF_Fixed radius, std::int32_t size)
        : begin(std::int64_t{center} + kFixedOne / 2 - radius),
          end(std::int64_t{center} + kFixedOne / 2 + radius),
          first(std::max<std::int64_t>(begin >> 16, 0)),
          last(std::min<std::int64_t>((end + kFixedOne - 1) >> 16, size) - 1) {}

    bool empty() const { return last < first; }
    // Whether it is exactly one pixel.
    bool isPixel() const { return begin == first * kFixedOne && end == begin + kFixedOne; }
    // How much of pixel i lies in the interval, 0 to 1.
    double weight(std::int64_t i) const {
        const std::int64_t from = std::max(begin, i * kFixedOne);
        const std::int64_t to = std::min(end, (i + 1) * kFixedOne);
        return static_cast<double>(to - from) / kFixedOne;
    }
};

template <class Pixel>
Pixel pixelFrom(double alpha, double red, double green, double blue) {
    if constexpr (std::is_same_v<Pixel, PF_PixelFloat>) {
        return {static_cast<float>(alpha), static_cast<float>(red), static_cast<float>(green),
                static_cast<float>(blue)};
    } else {
        using Channel = decltype(Pixel::alpha);
        const auto nearest = [](double v) { return static_cast<Channel>(std::floor(v + 0.5)); };
        return {nearest(alpha), nearest(red), nearest(green), nearest(blue)};
    }
}

// The mean over `area`: of alpha over all of it, of the colours weighted by alpha.
template <class Pixel>
Pixel meanOf(const PixelSum<double>& sum, double area) {
    if (sum.alpha == 0) return {};
    return pixelFrom<Pixel>(sum.alpha / area, sum.red / sum.alpha, sum.green / sum.alpha,
                            sum.blue / sum.alpha);
}

template <class Pixel>
const Pixel* rowOf(const PF_LayerDef& world, std::int64_t y) {
    return reinterpret_cast<const Pixel*>(static_cast<const std::byte*>(world.data) +
                                          y * world.rowbytes);
}

// One row of a box: the two outer pixels may be covered partially, those in between are covered
// fully.
template <class Pixel>
PixelSum<double> sumOfRow(const Pixel* row, const Coverage& across) {
    PixelSum<double> sum;
    sum.add(row[across.first], across.weight(across.first));
    if (across.last == across.first) return sum;
    PixelSum<RunNumber<Pixel>> run;
    for (std::int64_t x = across.first + 1; x < across.last; ++x) run.add(row[x]);
    sum.addSum(run, 1.0);
    sum.add(row[across.last], across.weight(across.last));
    return sum;
}

// Whether the weights of a mean by alpha leave this pixel as it is.
template <class Pixel>
bool hasFiniteAlpha(const Pixel& pixel) {
    if constexpr (std::is_same_v<Pixel, PF_PixelFloat>) {
        return pixel.alpha != 0.0F && std::isfinite(pixel.alpha);
    } else {
        return pixel.alpha != 0;
    }
}

template <class Pixel>
Pixel areaSample(const PF_LayerDef& world, PF_Fixed x, PF_Fixed y, PF_Fixed radiusX,
                 PF_Fixed radiusY) {
    const Coverage across(x, radiusX, world.width);
    const Coverage down(y, radiusY, world.height);
    if (across.empty() || down.empty()) return {};
    if (across.isPixel() && down.isPixel()) {
        // The usual sample of a depth map, where the sums would come to the same.
        const Pixel& pixel = rowOf<Pixel>(world, down.first)[across.first];
        if (hasFiniteAlpha(pixel)) return pixel;
    }
    PixelSum<double> sum;
    for (std::int64_t row = down.first; row <= down.last; ++row) {
        sum.addSum(sumOfRow(rowOf<Pixel>(world, row), across), down.weight(row));
    }
    const double area = 4.0 * radiusX * radiusY / (double{kFixedOne} * double{kFixedOne});
    return meanOf<Pixel>(sum, area);
}

// The alpha-weighted bilinear interpolation of the four pixels around the position.
template <class Pixel>
Pixel subpixelSample(const PF_LayerDef& world, PF_Fixed x, PF_Fixed y) {
    const std::int64_t left = x >> 16;
    const std::int64_t top = y >> 16;
    const double fractionX = static_cast<double>(x - left * kFixedOne) / kFixedOne;
    const double fractionY = static_cast<double>(y - top * kFixedOne) / kFixedOne;
    PixelSum<double> sum;
    for (std::int64_t row = top; row <= top + 1; ++row) {
        if (row < 0 || row >= world.height) continue;
        const double weightY = row == top ? 1.0 - fractionY : fractionY;
        for (std::int64_t column = left; column <= left + 1; ++column) {
            if (column < 0 || column >= world.width) continue;
            const double weight = weightY * (column == left ? 1.0 - fractionX : fractionX);
            // A pixel without weight isn't read: infinity times 0 is NaN.
            if (weight > 0) sum.add(rowOf<Pixel>(world, row)[column], weight);
        }
    }
    return meanOf<Pixel>(sum, 1.0);
}

// The pixel whose centre is nearest; halfway between two, the right or the lower one.
template <class Pixel>
Pixel nearestSample(const PF_LayerDef& world, PF_Fixed x, PF_Fixed y) {
    const std::int64_t column = (std::int64_t{x} + kFixedOne / 2) >> 16;
    const std::int64_t row = (std::int64_t{y} + kFixedOne / 2) >> 16;
    if (column < 0 || column >= world.width || row < 0 || row >= world.height) return {};
    return rowOf<Pixel>(world, row)[column];
}

}  // namespace headless
