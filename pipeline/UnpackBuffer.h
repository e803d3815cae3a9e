// SPDX-License-Identifier: Apache-2.0
#pragma once
// The last stage of a block: the blurred layers become pixels of the output.

#include <array>
#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/ExposureCurve.h"
#include "pipeline/PixelTraits.h"

// Writes the pixels of one tile. Item i of the iteration is pixel i of the tile; the apron of the
// block around it is never read.
template <class Pixel, std::size_t N>
class UnpackBuffer {
public:
    using Element = typename BlockLayout<N>::Element;

    // Copies the rectangles and keeps the rest by reference. `tile` is inside `block`; both are in
    // the output's coordinates. `buffer` holds the block after the inverse transform.
    UnpackBuffer(const RenderInfo& info, const Filter<N>& filter,
                 const AEO::Vector<Element>& buffer, const iRect& tile, const iRect& block,
                 PF_LayerDef& output)
        : info_(info),
          filter_(filter),
          tile_(tile),
          block_(block),
          buffer_(buffer),
          output_(output) {}

    // Writes pixel `index` of the tile. Always returns 0.
    int iterate(int thread, int index, int count);

private:
    static constexpr std::size_t kColours = BlockLayout<N>::kColours;
    using Colour = std::array<double, kColours>;  // red, green, blue, alpha

    // One pixel in the light domain of the convolution.
    struct Merged {
        Colour colour{};
        double weight = 0.0;  // of all layers; unused with one layer
    };

    static Merged single(const Element& channels);
    static Merged gathered(const Element& channels);
    static Merged scattered(const Element& channels);
    static void unpremultiply(Merged& merged);

    const Element& elementAt(std::int32_t x, std::int32_t y) const;
    void write(const Colour& colour, Pixel& pixel) const;

    const RenderInfo& info_;
    [[maybe_unused]] const Filter<N>& filter_;
    iRect tile_;
    iRect block_;
    const AEO::Vector<Element>& buffer_;
    PF_LayerDef& output_;
};

template <class Pixel, std::size_t N>
int UnpackBuffer<Pixel, N>::iterate(int, int item, int) {
    const auto index = static_cast<std::uint32_t>(item);
    const auto width = static_cast<std::uint32_t>(tile_.width());
    const std::int32_t x = static_cast<std::int32_t>(index % width) + tile_.left;
    const std::int32_t y = static_cast<std::int32_t>(index / width) + tile_.top;
    const Element& channels = elementAt(x, y);

    Merged merged;
    if constexpr (N == 1) {
        merged = single(channels);
    } else if (info_.compositeMode == kCompositeNormal) {
        merged = gathered(channels);
    } else if (info_.compositeMode == kCompositeSplit) {
        merged = scattered(channels);
    } else {
        return PF_Err_NONE;
    }
    unpremultiply(merged);
    write(merged.colour, pixelAt<Pixel>(output_, x, y));
    return PF_Err_NONE;
}

// The real element of a pixel; the imaginary one holds only rounding noise.
template <class Pixel, std::size_t N>
const typename UnpackBuffer<Pixel, N>::Element& UnpackBuffer<Pixel, N>::elementAt(
    std::int32_t x, std::int32_t y) const {
    const auto row = static_cast<std::size_t>(y - block_.top);
    const auto col = static_cast<std::size_t>(x - block_.left);
    return buffer_[2 * (static_cast<std::size_t>(block_.width()) * row + col)];
}

template <class Pixel, std::size_t N>
typename UnpackBuffer<Pixel, N>::Merged UnpackBuffer<Pixel, N>::single(const Element& channels) {
    return {{channels[0], channels[1], channels[2], channels[3]}};
}

// Normal: layer i holds the whole frame blurred by kernel i, and the pixel takes each of them in
// proportion to the layer's weight around it.
template <class Pixel, std::size_t N>
typename UnpackBuffer<Pixel, N>::Merged UnpackBuffer<Pixel, N>::gathered(const Element& channels) {
    Merged sum;
    for (std::size_t c = 0; c < BlockLayout<N>::kChannels; c += BlockLayout<N>::kLayerChannels) {
        const double weight = channels[c + kColours];
        for (std::size_t k = 0; k < kColours; ++k) sum.colour[k] += weight * channels[c + k];
        sum.weight += weight;
    }
    return sum;
}

// Split: layer i holds only its own light, spread by kernel i, and the light of all layers adds up.
template <class Pixel, std::size_t N>
typename UnpackBuffer<Pixel, N>::Merged UnpackBuffer<Pixel, N>::scattered(const Element& channels) {
    Merged sum;
    for (std::size_t c = 0; c < BlockLayout<N>::kChannels; c += BlockLayout<N>::kLayerChannels) {
        for (std::size_t k = 0; k < kColours; ++k) sum.colour[k] += channels[c + k];
        sum.weight += channels[c + kColours];
    }
    return sum;
}

// Where alpha isn't above zero, the colours are near zero and stay as they are.
template <class Pixel, std::size_t N>
void UnpackBuffer<Pixel, N>::unpremultiply(Merged& merged) {
    Colour& colour = merged.colour;
    const double alpha = colour[3];
    if constexpr (N == 1) {
        const double scale = alpha > 0.0 ? 1.0 / alpha : 1.0;
        for (std::size_t c = 0; c < 3; ++c) colour[c] *= scale;
    } else {
        if (alpha > 0.0) {
            for (std::size_t c = 0; c < 3; ++c) colour[c] /= alpha;
        }
        if (merged.weight > 0.0) colour[3] = alpha / merged.weight;
    }
}

template <class Pixel, std::size_t N>
void UnpackBuffer<Pixel, N>::write(const Colour& colour, Pixel& pixel) const {
    const auto display = [&](double value) {
        return channelFromDouble<Pixel>(compressExposure(value, info_.exposure, info_.threshold));
    };
    pixel.alpha = channelFromDouble<Pixel>(colour[3]);
    pixel.red = display(colour[0]);
    pixel.green = display(colour[1]);
    pixel.blue = display(colour[2]);
}
