// SPDX-License-Identifier: Apache-2.0
#pragma once
// The last stage of a block: the blurred layers become pixels of the output.

#include <algorithm>
#include <array>
#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/Vector.h"
#include "kernels/Filter.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/ExposureCurve.h"
#include "pipeline/PixelTraits.h"
#include "transform/LaneGroups.h"

// Writes the pixels of one tile. Item i of the iteration is pixel i of the tile; the apron of the
// block around it is never read. The first item of each run of kRun pixels writes the whole run, so
// that the curve has several colours to compute at once; the others return at once.
template <class Pixel, std::size_t N>
class UnpackBuffer {
public:
    using Element = typename BlockLayout<N>::Element;
    static constexpr int kRun = static_cast<int>(kPixelRun);

    // Copies the rectangles and keeps the rest by reference. `tile` is inside `block`; both are in
    // the output's coordinates. `buffer` holds the block after the inverse transform. Layers
    // outside `groups` have no weight in the block and aren't read.
    UnpackBuffer(const RenderInfo& info, const Filter<N>& filter,
                 const AEO::Vector<Element>& buffer, const iRect& tile, const iRect& block,
                 PF_LayerDef& output, LaneGroups groups = allGroups(BlockLayout<N>::kGroups))
        : info_(info),
          filter_(filter),
          tile_(tile),
          block_(block),
          buffer_(buffer),
          output_(output),
          groups_(groups) {}

    // Writes the run that begins with pixel `index` of the tile, if one does. Always returns 0.
    int iterate(int, int index, int) {
        if (index % kRun == 0 && known()) unpackRun(index);
        return PF_Err_NONE;
    }

private:
    static constexpr std::size_t kColours = BlockLayout<N>::kColours;
    using Colour = std::array<double, kColours>;  // red, green, blue, alpha

    // One pixel in the light domain of the convolution.
    struct Merged {
        Colour colour{};
        double weight = 0.0;  // of all layers; unused with one layer
    };

    // Whether the composite mode is one of the two; with another one, several layers are dropped.
    bool known() const {
        const std::int32_t mode = info_.compositeMode;
        return N == 1 || mode == kCompositeNormal || mode == kCompositeSplit;
    }
    ORBEL_OUT_OF_LINE void unpackRun(int first);

    Merged merge(const Element& channels) const;
    static Merged single(const Element& channels);
    static void gather(Merged& sum, const double* layer);
    static void scatter(Merged& sum, const double* layer);
    template <class Add>
    void forLayers(const Element& channels, Add&& add) const;
    static void unpremultiply(Merged& merged);

    const Element& elementAt(std::int32_t x, std::int32_t y) const;
    void write(const double* display, double alpha, Pixel& pixel) const;

    const RenderInfo& info_;
    [[maybe_unused]] const Filter<N>& filter_;
    iRect tile_;
    iRect block_;
    const AEO::Vector<Element>& buffer_;
    PF_LayerDef& output_;
    [[maybe_unused]] LaneGroups groups_;
};

template <class Pixel, std::size_t N>
void UnpackBuffer<Pixel, N>::unpackRun(int first) {
    const int left = tile_.width() * tile_.height() - first;
    const auto end = static_cast<std::size_t>(std::min(kRun, left));
    std::int32_t x = first % tile_.width() + tile_.left;
    std::int32_t y = first / tile_.width() + tile_.top;
    std::array<Pixel*, kRun> pixels;
    std::array<double, kRun> alpha;
    ET::vecT<double, std::size_t{3} * kRun> colours{};
    for (std::size_t i = 0; i < end; ++i) {
        Merged merged = merge(elementAt(x, y));
        unpremultiply(merged);
        for (std::size_t c = 0; c < 3; ++c) colours[3 * i + c] = merged.colour[c];
        alpha[i] = merged.colour[3];
        pixels[i] = &pixelAt<Pixel>(output_, x, y);
        if (++x == tile_.right) {
            x = tile_.left;
            ++y;
        }
    }
    compressExposure(colours, info_.exposure, info_.threshold);
    for (std::size_t i = 0; i < end; ++i) write(&colours[3 * i], alpha[i], *pixels[i]);
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
typename UnpackBuffer<Pixel, N>::Merged UnpackBuffer<Pixel, N>::merge(
    const Element& channels) const {
    if constexpr (N == 1) {
        return single(channels);
    } else {
        Merged sum;
        if (info_.compositeMode == kCompositeNormal) {
            forLayers(channels, [&](const double* layer) { gather(sum, layer); });
        } else {
            forLayers(channels, [&](const double* layer) { scatter(sum, layer); });
        }
        return sum;
    }
}

template <class Pixel, std::size_t N>
typename UnpackBuffer<Pixel, N>::Merged UnpackBuffer<Pixel, N>::single(const Element& channels) {
    return {{channels[0], channels[1], channels[2], channels[3]}};
}

// Calls `add` with the channels of each layer of the groups in use.
template <class Pixel, std::size_t N>
template <class Add>
void UnpackBuffer<Pixel, N>::forLayers(const Element& channels, Add&& add) const {
    using Layout = BlockLayout<N>;
    for (std::size_t g = 0; g < Layout::kGroups; ++g) {
        if (!contains(groups_, g)) continue;
        const auto [first, last] = Layout::layersOf(g);
        for (std::size_t i = first; i < last; ++i) add(&channels[Layout::kLayerChannels * i]);
    }
}

// Normal: layer i holds the whole frame blurred by kernel i, and the pixel takes each of them in
// proportion to the layer's weight around it.
template <class Pixel, std::size_t N>
void UnpackBuffer<Pixel, N>::gather(Merged& sum, const double* layer) {
    const double weight = layer[kColours];
    for (std::size_t k = 0; k < kColours; ++k) sum.colour[k] += weight * layer[k];
    sum.weight += weight;
}

// Split: layer i holds only its own light, spread by kernel i, and the light of all layers adds up.
template <class Pixel, std::size_t N>
void UnpackBuffer<Pixel, N>::scatter(Merged& sum, const double* layer) {
    for (std::size_t k = 0; k < kColours; ++k) sum.colour[k] += layer[k];
    sum.weight += layer[kColours];
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
void UnpackBuffer<Pixel, N>::write(const double* display, double alpha, Pixel& pixel) const {
    pixel.alpha = channelFromDouble<Pixel>(alpha);
    pixel.red = channelFromDouble<Pixel>(display[0]);
    pixel.green = channelFromDouble<Pixel>(display[1]);
    pixel.blue = channelFromDouble<Pixel>(display[2]);
}
