// SPDX-License-Identifier: Apache-2.0
#include "pictures/WorldPixels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace pictures {
namespace {

// The channel type of a world's pixels, and the value that means 1.
template <class Pixel>
struct Scale;

template <>
struct Scale<PF_Pixel> {
    static constexpr double kTop = PF_MAX_CHAN8;
    using Channel = std::uint8_t;
};

template <>
struct Scale<PF_Pixel16> {
    static constexpr double kTop = PF_MAX_CHAN16;
    using Channel = std::uint16_t;
};

template <class Pixel>
auto quantised(double value) {
    const double top = Scale<Pixel>::kTop;
    return static_cast<typename Scale<Pixel>::Channel>(
        std::lround(std::clamp(value, 0.0, 1.0) * top));
}

template <>
auto quantised<PF_PixelFloat>(double value) {
    constexpr double kLargest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}

template <class Pixel, class Channel>
double scaled(Channel value) {
    return value / Scale<Pixel>::kTop;
}

template <>
double scaled<PF_PixelFloat>(float value) {
    return static_cast<double>(value);
}

template <class Pixel>
Pixel encode(const float* rgba, bool associated) {
    Pixel pixel{};
    pixel.alpha = quantised<Pixel>(static_cast<double>(rgba[3]));
    const double alpha = scaled<Pixel>(pixel.alpha);
    const double divisor = associated && alpha != 0.0 ? alpha : 1.0;
    pixel.red = quantised<Pixel>(static_cast<double>(rgba[0]) / divisor);
    pixel.green = quantised<Pixel>(static_cast<double>(rgba[1]) / divisor);
    pixel.blue = quantised<Pixel>(static_cast<double>(rgba[2]) / divisor);
    return pixel;
}

template <class Pixel>
void fill(headless::World& world, const Picture& picture) {
    const auto width = static_cast<std::size_t>(picture.width());
    for (int y = 0; y < picture.height(); ++y) {
        Pixel* row = world.row<Pixel>(y);
        const float* source = picture.pixel(static_cast<std::size_t>(y) * width);
        for (std::size_t x = 0; x < width; ++x) {
            row[x] = encode<Pixel>(source + x * kChannels, picture.associated);
        }
    }
}

template <class Pixel>
void decode(const Pixel* row, std::span<float> rgba) {
    for (std::size_t i = 0; i < rgba.size(); i += kChannels, ++row) {
        rgba[i] = static_cast<float>(scaled<Pixel>(row->red));
        rgba[i + 1] = static_cast<float>(scaled<Pixel>(row->green));
        rgba[i + 2] = static_cast<float>(scaled<Pixel>(row->blue));
        rgba[i + 3] = static_cast<float>(scaled<Pixel>(row->alpha));
    }
}

}  // namespace

std::shared_ptr<headless::World> makeWorld(const Picture& picture, int bits) {
    auto world = std::make_shared<headless::World>(picture.width(), picture.height(),
                                                   headless::formatOfBits(bits));
    switch (bits) {
        case 8:
            fill<PF_Pixel>(*world, picture);
            break;
        case 16:
            fill<PF_Pixel16>(*world, picture);
            break;
        default:
            fill<PF_PixelFloat>(*world, picture);
            break;
    }
    return world;
}

void loadRow(const headless::World& world, int x, int y, std::span<float> rgba) {
    switch (headless::bitsOfFormat(world.format())) {
        case 8:
            return decode(world.row<PF_Pixel>(y) + x, rgba);
        case 16:
            return decode(world.row<PF_Pixel16>(y) + x, rgba);
        default:
            return decode(world.row<PF_PixelFloat>(y) + x, rgba);
    }
}

void storeRow(headless::World& world, int x, int y, std::span<const float> rgba) {
    PF_PixelFloat* pixel = world.row<PF_PixelFloat>(y) + x;
    for (std::size_t i = 0; i < rgba.size(); i += kChannels, ++pixel) {
        *pixel = {rgba[i + 3], rgba[i], rgba[i + 1], rgba[i + 2]};
    }
}

std::vector<float> straightPixels(const headless::World& world) {
    const auto row = static_cast<std::size_t>(world.width()) * kChannels;
    std::vector<float> pixels(row * static_cast<std::size_t>(world.height()));
    for (int y = 0; y < world.height(); ++y) {
        loadRow(world, 0, y, std::span(pixels).subspan(static_cast<std::size_t>(y) * row, row));
    }
    return pixels;
}

void makeStraight(std::span<float> pixels) {
    for (std::size_t i = 0; i < pixels.size(); i += kChannels) {
        const float alpha = pixels[i + 3];
        if (alpha == 0.0F || alpha == 1.0F) continue;
        for (std::size_t c = 0; c < 3; ++c) pixels[i + c] /= alpha;
    }
}

void associate(std::span<float> pixels, HiddenColour hidden) {
    for (std::size_t i = 0; i < pixels.size(); i += kChannels) {
        const float alpha = pixels[i + 3];
        if (alpha == 1.0F || (alpha == 0.0F && hidden == HiddenColour::kKept)) continue;
        for (std::size_t c = 0; c < 3; ++c) pixels[i + c] *= alpha;
    }
}

}  // namespace pictures
