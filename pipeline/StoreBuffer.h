// SPDX-License-Identifier: Apache-2.0
#pragma once
// The first stage of a block: pixels of the input layer become the input of the transform.

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "effect/RenderInfo.h"
#include "host/Vector.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/ExposureCurve.h"
#include "pipeline/LayerMix.h"
#include "pipeline/PixelTraits.h"

// Fills one block of B x B pixels. Item i of the iteration is pixel i of the block rectangle, which
// may be outside the input; it writes only the pixel's real and imaginary element.
template <class Pixel, std::size_t N>
class StoreBuffer {
public:
    using Element = typename BlockLayout<N>::Element;

    // Keeps its arguments by reference and allocates nothing. `depth` and `edge` hold one value per
    // pixel of the block; both are empty with N = 1, and `edge` is without edge suppression.
    StoreBuffer(const RenderInfo& info, const PF_LayerDef& input, const AEO::Vector<float>& depth,
                const AEO::Vector<float>& edge, const iRect& rect, AEO::Vector<Element>& block)
        : input_(input),
          block_(block),
          mix_(MixFunc::_MixLinear),
          info_(info),
          depth_(depth),
          edge_(edge),
          rect_(rect) {
        for (std::size_t c = 0; c < BlockLayout<N>::kChannels; ++c) zero_[c] = 0.0;
    }

    // Stores pixel `index` of the block. Always returns 0.
    int iterate(int thread, int index, int count);

    // Computes the weight of pixel `index` in each layer from its distance to the plane of focus.
    // The distance has no sign: in front of the plane and behind it are alike. Always returns 0.
    int depthIterate(int index, DepthReturn<N>& out);

private:
    struct Colour {
        double red;
        double green;
        double blue;
        double alpha;
    };

    // The position of a depth value among the layers, whose centres are at 0.5, 1.5, ... N - 0.5.
    double layerPosition(double depth) const;

    // The expanded colour of the input under block pixel `index`, multiplied by alpha. Inline,
    // since a call would pass it through memory, a seventh of the stage's time without depth
    // layers.
    ORBEL_LANE_INLINE Colour sourceColour(std::size_t index) const;
    ORBEL_LANE_INLINE Colour expanded(const Pixel& pixel, double exposure) const;
    double localExposure(std::size_t index) const;

    void writeWhole(Element& element, const Colour& colour) const;
    void writeWeights(Element& element, const DepthReturn<N>& weights) const;
    void writeShares(Element& element, const Colour& colour, const DepthReturn<N>& weights) const;

    const PF_LayerDef& input_;
    AEO::Vector<Element>& block_;
    Element zero_;
    double (*mix_)(double);
    const RenderInfo& info_;
    const AEO::Vector<float>& depth_;
    const AEO::Vector<float>& edge_;
    const iRect& rect_;
};

template <class Pixel, std::size_t N>
int StoreBuffer<Pixel, N>::iterate(int, int item, int) {
    const auto index = static_cast<std::size_t>(item);
    // The imaginary half is written here for every pixel, so the block need not be cleared.
    block_[2 * index + 1] = zero_;
    Element& real = block_[2 * index];
    const Colour colour = sourceColour(index);
    if constexpr (N == 1) {
        writeWhole(real, colour);
        return PF_Err_NONE;
    } else {
        // Outside the input the colour is zero but the weights aren't: the outside counts as
        // transparent, and the frame's edge fades.
        DepthReturn<N> weights;
        const int err = depthIterate(item, weights);
        if (info_.compositeMode == kCompositeSplit) {
            writeShares(real, colour, weights);
            return err;
        }
        real = zero_;
        writeWhole(real, colour);
        if (info_.compositeMode == kCompositeNormal) writeWeights(real, weights);
        return err;
    }
}

template <class Pixel, std::size_t N>
int StoreBuffer<Pixel, N>::depthIterate(int index, DepthReturn<N>& out) {
    const double s = layerPosition(static_cast<double>(depth_[static_cast<std::size_t>(index)]));
    const double floored = bounded(std::floor(s), 0.0, static_cast<double>(N - 1));
    const auto i = static_cast<std::size_t>(floored);
    const double u = s - floored - 0.5 + info_.profileOffset * 0.5;

    for (double& weight : out.weights) weight = 0.0;
    if (u < 0.0 && i >= 1) {
        const double a = mix_(u);
        out[i] = a + 1.0;
        out[i - 1] = -a;
    } else if (u >= 0.0 && i < N - 1) {
        const double a = mix_(u);
        out[i] = 1.0 - a;
        out[i + 1] = a;
    } else {
        out[i] = 1.0;
    }
    return PF_Err_NONE;
}

template <class Pixel, std::size_t N>
double StoreBuffer<Pixel, N>::layerPosition(double depth) const {
    const double t = bounded(info_.invertDepth ? depth : 1.0 - depth, 0.0, 1.0);
    const double f = info_.focalDistance;
    // 0 on the plane of focus, 1 at the farther end of the range.
    const double distance = std::fabs(t - (1.0 - f)) / std::max(f, 1.0 - f);
    const double nearness = 1.0 - distance;
    // The default profile's slope is 1 except for the last digit of a tangent, which changes no
    // result by more than its own rounding. The power would take a fifth of the stage's time.
    const bool even = std::fabs(info_.profileSlope - 1.0) < 1e-15;
    return static_cast<double>(N) * (even ? nearness : std::pow(nearness, info_.profileSlope));
}

template <class Pixel, std::size_t N>
typename StoreBuffer<Pixel, N>::Colour StoreBuffer<Pixel, N>::sourceColour(
    std::size_t index) const {
    const auto width = static_cast<std::uint32_t>(rect_.width());
    const auto row = static_cast<std::int32_t>(static_cast<std::uint32_t>(index) / width);
    const auto col = static_cast<std::int32_t>(static_cast<std::uint32_t>(index) % width);
    // The block is in coordinates of the output world; the origins place both worlds in the layer.
    std::int32_t x = col + rect_.left + info_.output->origin_x - info_.input->origin_x;
    std::int32_t y = row + rect_.top + info_.output->origin_y - info_.input->origin_y;
    if (info_.repeatEdge) {
        x = std::min(std::max(x, 0), input_.width - 1);
        y = std::min(std::max(y, 0), input_.height - 1);
    }
    if (x < 0 || y < 0 || x >= input_.width || y >= input_.height) return {0.0, 0.0, 0.0, 0.0};
    return expanded(pixelAt<Pixel>(input_, x, y), localExposure(index));
}

template <class Pixel, std::size_t N>
typename StoreBuffer<Pixel, N>::Colour StoreBuffer<Pixel, N>::expanded(const Pixel& pixel,
                                                                       double exposure) const {
    const double alpha = channelToDouble<Pixel>(pixel.alpha);
    const auto light = [&](double value) {
        return expandExposure(value, exposure, info_.threshold) * alpha;
    };
    return {light(channelToDouble<Pixel>(pixel.red)), light(channelToDouble<Pixel>(pixel.green)),
            light(channelToDouble<Pixel>(pixel.blue)), alpha};
}

// The expansion is reduced on a depth edge, so that a highlight on the outline of a sharp object
// can't bloom across it. The unpack stage still compresses by the full exposure: with an exposure
// above zero such a pixel comes out a little darker.
template <class Pixel, std::size_t N>
double StoreBuffer<Pixel, N>::localExposure(std::size_t index) const {
    if constexpr (N >= 2) {
        if (info_.edgeLeak > 0.0) {
            const double above = static_cast<double>(edge_[index]) - info_.edgeThreshold;
            return info_.exposure * (1.0 - bounded(info_.edgeLeak * above, 0.0, 1.0));
        }
    }
    return info_.exposure;
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeWhole(Element& element, const Colour& colour) const {
    element[0] = colour.red;
    element[1] = colour.green;
    element[2] = colour.blue;
    element[3] = colour.alpha;
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeWeights(Element& element, const DepthReturn<N>& weights) const {
    for (std::size_t i = 0; i < N; ++i) element[BlockLayout<N>::kColours + i] = weights[i];
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeShares(Element& element, const Colour& colour,
                                        const DepthReturn<N>& weights) const {
    for (std::size_t i = 0; i < N; ++i) {
        const std::size_t c = BlockLayout<N>::kLayerChannels * i;
        element[c] = weights[i] * colour.red;
        element[c + 1] = weights[i] * colour.green;
        element[c + 2] = weights[i] * colour.blue;
        element[c + 3] = weights[i] * colour.alpha;
        element[c + BlockLayout<N>::kColours] = weights[i];
    }
}
