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
std::vector<float> decode(const headless::World& world) {
    std::vector<float> pixels;
    pixels.reserve(static_cast<std::size_t>(world.width()) *
                   static_cast<std::size_t>(world.height()) * kChannels);
    for (int y = 0; y < world.height(); ++y) {
        const Pixel* row = world.row<Pixel>(y);
        for (int x = 0; x < world.width(); ++x) {
            for (const auto channel : {row[x].red, row[x].green, row[x].blue, row[x].alpha}) {
                pixels.push_back(static_cast<float>(scaled<Pixel>(channel)));
            }
        }
    }
    return pixels;
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

std::vector<float> straightPixels(const headless::World& world) {
    switch (headless::bitsOfFormat(world.format())) {
        case 8:
            return decode<PF_Pixel>(world);
        case 16:
            return decode<PF_Pixel16>(world);
        default:
            return decode<PF_PixelFloat>(world);
    }
}

void associate(std::vector<float>& pixels) {
    for (std::size_t i = 0; i + 3 < pixels.size(); i += kChannels) {
        const float alpha = pixels[i + 3];
        if (alpha == 0.0F || alpha == 1.0F) continue;
        for (std::size_t c = 0; c < 3; ++c) pixels[i + c] *= alpha;
    }
}

double largestColour(const headless::World& world) {
    const std::vector<float> pixels = straightPixels(world);
    float largest = 0.0F;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (i % kChannels != 3) largest = std::max(largest, pixels[i]);
    }
    return static_cast<double>(largest);
}

}  // namespace pictures
