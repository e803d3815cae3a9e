// SPDX-License-Identifier: Apache-2.0
#pragma once
// Builds the kernel bank of a frame: chooses the image of the aperture, samples it, normalises.

#include <algorithm>
#include <cstdint>
#include <utility>

#include "effect/ParameterIndices.h"
#include "host/AEO_Parameter.h"
#include "host/Iterator.h"
#include "kernels/CustomFilter.h"
#include "kernels/GenFilter.h"
#include "kernels/NormalizeFilter.h"

// Fills `filter`, which is zero at first; everything is kept by reference. `worlds` is the host's
// world suite, null when the host lacks it.
template <std::size_t N>
class KernelBuild {
public:
    KernelBuild(PF_InData* in_data, AEO::InData& context, const RenderInfo& info,
                const PF_WorldSuite2* worlds, Filter<N>& filter)
        : in_data_(in_data), context_(context), info_(info), worlds_(worlds), filter_(filter) {
        // A bank that no image fills stays zero with any finite factor.
        for (std::size_t l = 0; l < N; ++l) factors_[l] = 1.0;
    }

    // Reads `Custom Blur Shape`, which stays checked out until the end, and fills and normalises
    // the kernels. Returns the first error of the host, or 4 when memory for the work is short.
    int run();

private:
    // A side below this leaves the rim of a generated aperture too coarse for small kernels.
    static constexpr std::int32_t kSmallestShape = 256;

    int blockArea() const { return static_cast<int>(filter_.size * filter_.size); }

    int sampleLayer(PF_LayerDef& layer);
    int sampleGeneratedShape();
    template <class Pixel>
    int samplePicture(PF_LayerDef& picture);

    PF_InData* in_data_;
    AEO::InData& context_;
    const RenderInfo& info_;
    const PF_WorldSuite2* worlds_;
    Filter<N>& filter_;
    typename Filter<N>::Element factors_;
};

template <std::size_t N>
int KernelBuild<N>::run() {
    AEO::Parameter shape(in_data_, kCustomBlurShape);
    PF_LayerDef* layer = shape.layer();
    int err = shape._err;
    if (!err) err = layer->reserved0 ? sampleLayer(*layer) : sampleGeneratedShape();
    if (err) return err;

    NormalizeFilter<Filter<N>> normalize(context_, filter_, factors_);
    return AEO::Iterator::IterationT(context_, normalize, blockArea());
}

// The layer has a pixel format of its own, whatever the frame's. An unknown format leaves the bank
// zero, and the frame comes out empty.
template <std::size_t N>
int KernelBuild<N>::sampleLayer(PF_LayerDef& layer) {
    PF_PixelFormat format = PF_PixelFormat_ARGB32;
    const int err = worlds_ ? worlds_->PF_GetPixelFormat(&layer, &format) : PF_Err_NONE;
    if (err) return err;
    switch (format) {
        case PF_PixelFormat_ARGB128:
            return samplePicture<PF_PixelFloat>(layer);
        case PF_PixelFormat_ARGB64:
            return samplePicture<PF_Pixel16>(layer);
        case PF_PixelFormat_ARGB32:
            return samplePicture<PF_Pixel>(layer);
        default:
            return PF_Err_NONE;
    }
}

template <std::size_t N>
int KernelBuild<N>::sampleGeneratedShape() {
    const std::int32_t side = std::max(static_cast<std::int32_t>(filter_.size), kSmallestShape);
    AEO::NewEffectWorld shape(context_, side, side, AEO::PixelFormat::kF32);
    // The world must not be destroyed with an error in it.
    int err = std::exchange(shape._err, PF_Err_NONE);
    if (err) return err;

    GenFilter generator(context_, in_data_, info_, shape);
    err = AEO::Iterator::IterationT(context_, generator, side * side);
    return err ? err : samplePicture<PF_PixelFloat>(shape.world);
}

template <std::size_t N>
template <class Pixel>
int KernelBuild<N>::samplePicture(PF_LayerDef& picture) {
    CustomFilterInfo custom{info_.suites, &picture};
    CustomFilter<Pixel, Filter<N>> builder(context_, in_data_, info_, filter_, custom);
    const int err = AEO::Iterator::IterationT(context_, builder, blockArea());
    builder.resetZeroFilter();
    for (std::size_t l = 0; l < N; ++l) factors_[l] = builder.getNormalizeFactor(l);
    return err;
}
