// SPDX-License-Identifier: Apache-2.0
#pragma once
// The host's pixel formats, and its area sampling evaluated directly, as the reference for stages
// that sample.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "headless/World.h"

// kTop is the channel value for 1.0; kTolerance is how far a sampled channel may be from the exact
// mean.
template <class Pixel>
struct Format;
template <>
struct Format<PF_Pixel> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB32;
    static constexpr double kTop = PF_MAX_CHAN8;
    static constexpr double kTolerance = 0.501;  // the host rounds to whole steps
};
template <>
struct Format<PF_Pixel16> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB64;
    static constexpr double kTop = PF_MAX_CHAN16;
    static constexpr double kTolerance = 0.51;
};
template <>
struct Format<PF_PixelFloat> {
    static constexpr PF_PixelFormat kCode = PF_PixelFormat_ARGB128;
    static constexpr double kTop = 1.0;
    static constexpr double kTolerance = 1e-6;
};
using PixelTypes = testing::Types<PF_Pixel, PF_Pixel16, PF_PixelFloat>;

// A box around (x, y), in pixels of an image whose pixel i covers i - 0.5 to i + 0.5.
struct Box {
    double x, y, halfX, halfY;
};

// A number rounded to 16.16 fixed point, without its limits.
inline double asFixed(double value) {
    return std::round(value * 65536.0) / 65536.0;
}

// The same for the half extent of a box, which the host accepts up to 128 pixels.
inline double asRadius(double value) {
    return std::clamp(asFixed(value), 1.0 / 65536.0, 128.0);
}

// How much of pixel i lies within `half` of `centre`.
inline double covered(int i, double centre, double half) {
    return std::max(0.0, std::min(i + 0.5, centre + half) - std::max(i - 0.5, centre - half));
}

// The mean alpha over the box, 0 outside the image, and the colours' alpha-weighted mean.
inline PF_PixelFloat boxMean(const headless::World& picture, const Box& box) {
    double alpha = 0, red = 0, green = 0, blue = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const double high = covered(y, box.y, box.halfY);
        for (int x = 0; high > 0.0 && x < picture.width(); ++x) {
            const double area = high * covered(x, box.x, box.halfX);
            if (area == 0.0) continue;
            const PF_PixelFloat p = picture.get(x, y);
            alpha += area * p.alpha;
            red += area * p.alpha * p.red;
            green += area * p.alpha * p.green;
            blue += area * p.alpha * p.blue;
        }
    }
    if (alpha == 0.0) return {};
    const auto mean = [](double sum, double weight) { return static_cast<float>(sum / weight); };
    return {mean(alpha, 4.0 * box.halfX * box.halfY), mean(red, alpha), mean(green, alpha),
            mean(blue, alpha)};
}

// Fills an image with values that differ from pixel to pixel and from channel to channel.
inline void fillUnevenly(headless::World& picture) {
    const auto step = [](int value, int steps) {
        return static_cast<float>(value % steps) / static_cast<float>(steps - 1);
    };
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.set(x, y,
                        {0.25f + 0.75f * step(3 * x + 5 * y, 11), step(7 * x + 2 * y, 17),
                         step(x * x + y, 13), step(4 * x + y * y, 19)});
        }
    }
}
