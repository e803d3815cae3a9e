// SPDX-License-Identifier: Apache-2.0
#include "trial/Pictures.h"

#include <cstdint>

namespace trial {

namespace {

// A channel value in steps of 1 / kOne. Below 2^24 such a value is exact in float, and so is
// everything that World::set() computes with it.
using Steps = std::int32_t;
constexpr Steps kOne = 32768;

struct StepsPixel {
    Steps alpha;
    Steps red;
    Steps green;
    Steps blue;
};

float fraction(Steps steps) {
    return static_cast<float>(steps) / static_cast<float>(kOne);
}

template <class PixelAt>
Picture paint(int width, int height, int bits, const PixelAt& pixelAt) {
    auto world = std::make_shared<headless::World>(width, height, headless::formatOfBits(bits));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const StepsPixel p = pixelAt(x, y);
            world->set(x, y,
                       {fraction(p.alpha), fraction(p.red), fraction(p.green), fraction(p.blue)});
        }
    }
    return world;
}

// From 0 to below `range`, which is at most 65536, without a visible pattern.
Steps noise(int x, int y, int channel, Steps range) {
    auto bits = static_cast<std::uint32_t>((x * 613 + y) * 8 + channel);
    for (int round = 0; round < 3; ++round) bits = (bits ^ bits >> 15) * 747796405U + 12345U;
    return static_cast<Steps>((bits >> 16) * static_cast<std::uint32_t>(range) >> 16);
}

Steps nightAlpha(int x, int y, int width, int height) {
    if (x < width / 3 && y < height / 2) return 0;
    const int across = (x + y) % 40;
    return across < 12 ? kOne / 2 + across * 512 : kOne;
}

}  // namespace

Picture nightPicture(int width, int height, int bits) {
    return paint(width, height, bits, [=](int x, int y) {
        const Steps alpha = nightAlpha(x, y, width, height);
        const bool bright = noise(x, y, 0, 64) == 0;
        if (bright) return StepsPixel{alpha, 8 * kOne, 6 * kOne, 4 * kOne + noise(x, y, 1, kOne)};
        const Steps ramp = kOne / 4 * x / width;
        return StepsPixel{alpha, ramp + noise(x, y, 1, kOne / 4), noise(x, y, 2, kOne / 3),
                          kOne / 8 + noise(x, y, 3, kOne / 4)};
    });
}

Picture depthPicture(int width, int height, int bits) {
    return paint(width, height, bits, [=](int x, int y) {
        const Steps ramp = kOne / 2 * x / width;
        const Steps step = y > height / 2 ? kOne / 3 : 0;
        return StepsPixel{kOne, ramp + step + noise(x, y, 4, kOne / 16), ramp, step};
    });
}

Picture shapePicture(int side, int bits) {
    return paint(side, side, bits, [=](int x, int y) {
        const bool inside = x > 0 && y > 0 && x < side - 1 && y < side - 1;
        const bool notch = 3 * y < side && 5 * x < 2 * side;
        const Steps weight = inside && !notch ? kOne / 4 + kOne / 2 * x * y / (side * side) : 0;
        return StepsPixel{weight, weight, weight / 2, kOne - weight};
    });
}

}  // namespace trial
