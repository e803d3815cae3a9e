// SPDX-License-Identifier: Apache-2.0
#pragma once
// The stages of one block: store, forward transform, multiply, inverse transform, unpack.

#include "depth/DetectEdge.h"
#include "depth/ExtractDepth.h"
#include "depth/Sobel.h"
#include "host/Iterator.h"
#include "pipeline/MultiplyReal.h"
#include "pipeline/StoreBuffer.h"
#include "pipeline/UnpackBuffer.h"
#include "transform/FFT2D.h"
#include "transform/RealFFT2D.h"

// What the store stage needs of the depth map under one block: a value for each pixel of the block.
// Both are empty without a depth map, and `edge` is without edge suppression.
struct BlockDepth {
    explicit BlockDepth(AEO::InData& context) : depth(context), edge(context) {}

    AEO::Vector<float> depth;
    AEO::Vector<float> edge;
};

// The stages of a frame's blocks, bound to the frame's buffers; everything is kept by reference.
// Each stage is one or more iterations over the host's threads and returns the host's result; the
// return from an iteration is the barrier between two stages.
template <std::size_t N>
class BlockStages {
public:
    using Layout = BlockLayout<N>;
    using Element = typename Layout::Element;

    // `filter` holds the kernels' spectra, `block` 2 x B x B elements. `pixelFormat` is the
    // output's and the input's.
    BlockStages(AEO::InData& context, const RenderInfo& info, const PF_LayerDef& input,
                PF_LayerDef& output, PF_PixelFormat pixelFormat, const Filter<N>& filter,
                FFTWeights& weights, AEO::Vector<Element>& block)
        : context_(context),
          info_(info),
          input_(input),
          output_(output),
          pixelFormat_(pixelFormat),
          filter_(filter),
          weights_(weights),
          block_(block) {}

    // Runs all stages for one tile and the block around it. Stops at the first error; nothing is
    // written unless all stages before unpack succeed.
    int run(const iRect& tile, const iRect& rect) {
        int err = fill(rect);
        if (!err) err = forward();
        if (!err) err = multiply();
        if (!err) err = inverse(tile, rect);
        if (!err) err = unpack(tile, rect);
        return err;
    }

    // Reads the depth map under a block and finds its edges.
    int analyse(const iRect& rect, BlockDepth& map);
    int store(const iRect& rect, const BlockDepth& map);
    int forward();
    int multiply();
    // Brings back the rows of the tile, and with an unknown composite mode the whole block.
    int inverse(const iRect& tile, const iRect& rect);
    int unpack(const iRect& tile, const iRect& rect);

private:
    int area() const { return static_cast<int>(filter_.size * filter_.size); }

    int fill(const iRect& rect);
    int extractDepth(const iRect& rect, AEO::Vector<float>& depth);
    int detectEdges(const iRect& rect, BlockDepth& map);

    // Resizes one of the block's small vectors; returns 4 when the host has no memory for it.
    template <class T>
    int allocate(AEO::Vector<T>& vector) {
        vector.resize(filter_.size * filter_.size);
        return vector.data() ? PF_Err_NONE : PF_Err_OUT_OF_MEMORY;
    }

    // The transform of the layers in use.
    auto layers() {
        return RealFFT2D<Layout::kChannels>(weights_, block_.data(), filter_.size, groups_);
    }

    template <class Stage>
    int iterate(Stage&& stage, int count) {
        return AEO::Iterator::IterationT(context_, stage, count);
    }

    AEO::InData& context_;
    const RenderInfo& info_;
    const PF_LayerDef& input_;
    PF_LayerDef& output_;
    const PF_PixelFormat pixelFormat_;
    const Filter<N>& filter_;
    FFTWeights& weights_;
    AEO::Vector<Element>& block_;
    LaneGroups groups_ = 0;  // of the layers that the block's pixels are in, once it is stored
};

// The depth values are freed as soon as the block is stored.
template <std::size_t N>
int BlockStages<N>::fill(const iRect& rect) {
    BlockDepth map(context_);
    const int err = analyse(rect, map);
    return err ? err : store(rect, map);
}

template <std::size_t N>
int BlockStages<N>::analyse([[maybe_unused]] const iRect& rect, [[maybe_unused]] BlockDepth& map) {
    int err = PF_Err_NONE;
    if constexpr (N >= 2) {
        err = extractDepth(rect, map.depth);
        if (!err && info_.edgeLeak > 0.0) err = detectEdges(rect, map);
    }
    return err;
}

template <std::size_t N>
int BlockStages<N>::extractDepth(const iRect& rect, AEO::Vector<float>& depth) {
    const int err = allocate(depth);
    if (err) return err;
    // The sampling box is the footprint of one frame pixel in the map.
    double halfWidth = 0.5;
    double halfHeight = 0.5;
    if (info_.placement == kPlacementStretch) {
        const PF_LayerDef& map = info_.depthWorld.world;
        const PF_LRect& frame = info_.frameRect;
        halfWidth = 0.5 * map.width / (frame.right - frame.left);
        halfHeight = 0.5 * map.height / (frame.bottom - frame.top);
    }
    ExtractDepth extract(info_, info_.depthWorld, rect, depth, halfWidth, halfHeight);
    return iterate(extract, area());
}

template <std::size_t N>
int BlockStages<N>::detectEdges(const iRect& rect, BlockDepth& map) {
    AEO::Vector<ET::vecT<double, 2>> gradient(context_);
    int err = allocate(gradient);
    if (!err) err = allocate(map.edge);
    if (!err) err = iterate(Sobel(map.depth, rect, gradient), area());
    if (!err) err = iterate(DetectEdge(gradient, rect, map.edge), area());
    return err;
}

template <std::size_t N>
int BlockStages<N>::store(const iRect& rect, const BlockDepth& map) {
    return withPixelType(pixelFormat_, [&](auto pixel) {
        StoreBuffer<decltype(pixel), N> stage(info_, input_, map.depth, map.edge, rect, block_);
        const int err = iterate(stage, area());
        groups_ = stage.groups();
        return err;
    });
}

// Normal needs only the colours and weights, the first lanes of the block.
template <std::size_t N>
int BlockStages<N>::forward() {
    if (info_.compositeMode == kCompositeNormal) {
        return RealFFT2D<Layout::kChannels, Layout::kForwardChannels>(weights_, block_.data(),
                                                                      filter_.size)
            .forward(context_);
    }
    if (info_.compositeMode == kCompositeSplit) return layers().forward(context_);
    return PF_Err_NONE;
}

template <std::size_t N>
int BlockStages<N>::multiply() {
    if (info_.compositeMode == kCompositeSplit) {
        return iterate(MultiplyReal<N, kCompositeSplit>(filter_, block_, groups_), area());
    }
    if (info_.compositeMode == kCompositeNormal) {
        return iterate(MultiplyReal<N, kCompositeNormal>(filter_, block_, groups_), area());
    }
    return PF_Err_NONE;
}

template <std::size_t N>
int BlockStages<N>::inverse(const iRect& tile, const iRect& rect) {
    if (info_.compositeMode != kCompositeNormal && info_.compositeMode != kCompositeSplit) {
        return FFT2D<Element>(weights_, block_.data(), filter_.size).doFFT2D(context_, true);
    }
    const auto first = static_cast<std::size_t>(tile.top - rect.top);
    return layers().inverse(context_, {first, first + static_cast<std::size_t>(tile.height())});
}

template <std::size_t N>
int BlockStages<N>::unpack(const iRect& tile, const iRect& rect) {
    return withPixelType(pixelFormat_, [&](auto pixel) {
        using Unpack = UnpackBuffer<decltype(pixel), N>;
        return iterate(Unpack(info_, filter_, block_, tile, rect, output_, groups_),
                       tile.width() * tile.height());
    });
}
