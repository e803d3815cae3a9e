// SPDX-License-Identifier: Apache-2.0
#pragma once
// The first stage of a block: pixels of the input layer become the input of the transform.

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "effect/RenderInfo.h"
#include "host/Vector.h"
#include "pipeline/BlockLayout.h"
#include "pipeline/ExposureCurve.h"
#include "pipeline/LayerMix.h"
#include "pipeline/PixelTraits.h"
#include "transform/LaneGroups.h"

// Fills one block of B x B pixels, B being a multiple of kPixelRun. Item i of the iteration is
// pixel i of the block rectangle, which may be outside the input. The first item of each run of
// kPixelRun pixels fills the real and imaginary elements of the whole run; the others return at
// once.
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
          rect_(rect) {}

    // Stores the run that begins with pixel `index`, if one does. Always returns 0.
    int iterate(int, int index, int) {
        const auto first = static_cast<std::size_t>(index);
        if (first % kPixelRun == 0) storeRun(first);
        return PF_Err_NONE;
    }

    // Computes the weight of pixel `index` in each layer from its distance to the plane of focus.
    // The distance has no sign: in front of the plane and behind it are alike. Always returns 0.
    int depthIterate(int index, DepthReturn<N>& out);

    // After the iteration: the groups of layers that a pixel of the block has weight in.
    LaneGroups groups() const { return groups_; }

private:
    // The colours of a run, expanded and multiplied by alpha; red, green and blue of a pixel stand
    // side by side.
    using Light = ET::vecT<double, 3 * kPixelRun>;
    struct Colours {
        Light light;
        double alpha[kPixelRun];
    };

    // The weights of layers `first` and `first` + 1; all others have none.
    struct LayerShare {
        std::size_t first;
        double weight;
        double next;
    };

    ORBEL_OUT_OF_LINE void storeRun(std::size_t first);

    // The position of a depth value among the layers, whose centres are at 0.5, 1.5, ... N - 0.5.
    double layerPosition(double depth) const;
    LayerShare layerShare(std::size_t index) const;

    void readRun(std::size_t index, Colours& colours) const;
    void expandRun(std::size_t index, Colours& colours) const;
    void expandLocally(std::size_t index, Colours& colours) const;
    void note(const LayerShare& share);

    void writeColour(Element& element, const Colours& colours, std::size_t pixel) const;
    void writeWeights(Element& element, const LayerShare& share) const;
    void writeShares(Element& element, const Colours& colours, std::size_t pixel,
                     const LayerShare& share) const;
    void writeLayers(Element& element, const Colours& colours, std::size_t pixel,
                     const LayerShare& share) const;

    const PF_LayerDef& input_;
    AEO::Vector<Element>& block_;
    double (*mix_)(double);
    const RenderInfo& info_;
    const AEO::Vector<float>& depth_;
    const AEO::Vector<float>& edge_;
    const iRect& rect_;
    std::atomic<LaneGroups> groups_{N == 1 ? 1 : 0};
};

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::storeRun(std::size_t first) {
    Colours colours;
    readRun(first, colours);
    expandRun(first, colours);
    // Imaginary halves, and the lanes of layers that a pixel isn't in. In one piece, since the
    // library's way of clearing much memory doesn't read it first.
    std::memset(static_cast<void*>(&block_[2 * first]), 0, 2 * kPixelRun * sizeof(Element));
    for (std::size_t i = 0; i < kPixelRun; ++i) {
        Element& real = block_[2 * (first + i)];
        if constexpr (N == 1) {
            writeColour(real, colours, i);
        } else {
            // Outside the input the colour is zero but the weights aren't: the outside counts as
            // transparent, and the frame's edge fades.
            const LayerShare share = layerShare(first + i);
            writeLayers(real, colours, i, share);
            note(share);
        }
    }
}

template <class Pixel, std::size_t N>
int StoreBuffer<Pixel, N>::depthIterate(int index, DepthReturn<N>& out) {
    const LayerShare share = layerShare(static_cast<std::size_t>(index));
    for (double& weight : out.weights) weight = 0.0;
    out[share.first] = share.weight;
    if (share.first + 1 < N) out[share.first + 1] = share.next;
    return PF_Err_NONE;
}

template <class Pixel, std::size_t N>
typename StoreBuffer<Pixel, N>::LayerShare StoreBuffer<Pixel, N>::layerShare(
    std::size_t index) const {
    const double s = layerPosition(static_cast<double>(depth_[index]));
    const double floored = bounded(std::floor(s), 0.0, static_cast<double>(N - 1));
    const auto i = static_cast<std::size_t>(floored);
    const double u = s - floored - 0.5 + info_.profileOffset * 0.5;
    if (u < 0.0 && i >= 1) {
        const double a = mix_(u);
        return {i - 1, -a, a + 1.0};
    }
    if (u >= 0.0 && i < N - 1) {
        const double a = mix_(u);
        return {i, 1.0 - a, a};
    }
    return {i, 1.0, 0.0};
}

template <class Pixel, std::size_t N>
double StoreBuffer<Pixel, N>::layerPosition(double depth) const {
    const double t = bounded(info_.invertDepth ? depth : 1.0 - depth, 0.0, 1.0);
    const double f = info_.focalDistance;
    // 0 on the plane of focus, 1 at the farther end of the range.
    const double distance = std::fabs(t - (1.0 - f)) / std::max(f, 1.0 - f);
    // The default profile's slope is 1 except for the last digit of a tangent, which changes no
    // result by more than its own rounding, and a power for each pixel would take its time.
    const bool even = std::fabs(info_.profileSlope - 1.0) < 1e-15;
    const double position =
        even ? 1.0 - distance : ET::lane::powerOfRest(distance, info_.profileSlope);
    return static_cast<double>(N) * position;
}

// Normalises the pixels of the input under a run, which lies in one row of the block. Outside the
// input, alpha is zero and the colours are values that the curve keeps finite.
template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::readRun(std::size_t index, Colours& colours) const {
    const auto width = static_cast<std::size_t>(rect_.width());
    const auto row = static_cast<std::int32_t>(index / width);
    const auto col = static_cast<std::int32_t>(index % width);
    // The block is in coordinates of the output world; the origins place both worlds in the layer.
    const std::int32_t left = col + rect_.left + info_.output->origin_x - info_.input->origin_x;
    std::int32_t y = row + rect_.top + info_.output->origin_y - info_.input->origin_y;
    if (info_.repeatEdge) y = std::min(std::max(y, 0), input_.height - 1);
    const bool rowInside = y >= 0 && y < input_.height;
    for (std::size_t i = 0; i < kPixelRun; ++i) {
        std::int32_t x = left + static_cast<std::int32_t>(i);
        if (info_.repeatEdge) x = std::min(std::max(x, 0), input_.width - 1);
        double* const light = &colours.light[3 * i];
        if (rowInside && x >= 0 && x < input_.width) {
            const Pixel& pixel = pixelAt<Pixel>(input_, x, y);
            light[0] = channelToDouble<Pixel>(pixel.red);
            light[1] = channelToDouble<Pixel>(pixel.green);
            light[2] = channelToDouble<Pixel>(pixel.blue);
            colours.alpha[i] = channelToDouble<Pixel>(pixel.alpha);
        } else {
            light[0] = light[1] = light[2] = info_.threshold;
            colours.alpha[i] = 0.0;
        }
    }
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::expandRun(std::size_t index, Colours& colours) const {
    if (info_.exposure != 0.0) {
        if (N >= 2 && info_.edgeLeak > 0.0) {
            expandLocally(index, colours);
        } else {
            expandExposure(colours.light, SameForAllLanes{info_.exposure},
                           SameForAllLanes{1.0 / info_.exposure}, info_.threshold);
        }
    }
    for (std::size_t i = 0; i < kPixelRun; ++i) {
        for (std::size_t c = 0; c < 3; ++c) colours.light[3 * i + c] *= colours.alpha[i];
    }
}

// The expansion is reduced on a depth edge, so that a highlight on the outline of a sharp object
// can't bloom across it. The unpack stage still compresses by the full exposure: with an exposure
// above zero such a pixel comes out a little darker.
template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::expandLocally(std::size_t index, Colours& colours) const {
    Light exposures;
    Light reciprocals;
    for (std::size_t i = 0; i < kPixelRun; ++i) {
        const double above = static_cast<double>(edge_[index + i]) - info_.edgeThreshold;
        const double exposure = info_.exposure * (1.0 - bounded(info_.edgeLeak * above, 0.0, 1.0));
        for (std::size_t c = 0; c < 3; ++c) {
            exposures[3 * i + c] = exposure;
            reciprocals[3 * i + c] = 1.0 / exposure;
        }
    }
    expandExposure(colours.light, exposures, reciprocals, info_.threshold);
}

// Threads meet here, but only until each group has been noted once.
template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::note(const LayerShare& share) {
    constexpr std::size_t kLayers = BlockLayout<N>::kGroupLayers;
    LaneGroups used = groupBit(share.first / kLayers);
    if (share.next != 0.0) used |= groupBit((share.first + 1) / kLayers);
    if ((used & ~groups_.load(std::memory_order_relaxed)) != 0) groups_ |= used;
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeLayers(Element& element, const Colours& colours, std::size_t pixel,
                                        const LayerShare& share) const {
    if (info_.compositeMode == kCompositeSplit) {
        writeShares(element, colours, pixel, share);
        return;
    }
    writeColour(element, colours, pixel);
    if (info_.compositeMode == kCompositeNormal) writeWeights(element, share);
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeColour(Element& element, const Colours& colours,
                                        std::size_t pixel) const {
    for (std::size_t c = 0; c < 3; ++c) element[c] = colours.light[3 * pixel + c];
    element[3] = colours.alpha[pixel];
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeWeights(Element& element, const LayerShare& share) const {
    double* const weights = &element[BlockLayout<N>::kColours];
    weights[share.first] = share.weight;
    if (share.next != 0.0) weights[share.first + 1] = share.next;
}

template <class Pixel, std::size_t N>
void StoreBuffer<Pixel, N>::writeShares(Element& element, const Colours& colours, std::size_t pixel,
                                        const LayerShare& share) const {
    const auto write = [&](std::size_t layer, double weight) {
        double* const channels = &element[BlockLayout<N>::kLayerChannels * layer];
        for (std::size_t c = 0; c < 3; ++c) channels[c] = weight * colours.light[3 * pixel + c];
        channels[3] = weight * colours.alpha[pixel];
        channels[BlockLayout<N>::kColours] = weight;
    };
    write(share.first, share.weight);
    if (share.next != 0.0) write(share.first + 1, share.next);
}
