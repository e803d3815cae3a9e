// SPDX-License-Identifier: Apache-2.0
#pragma once
// Samples the image of the aperture into the kernels of all depth layers.

#include <algorithm>
#include <cstddef>

#include "effect/RenderInfo.h"
#include "host/AEO_Base.h"
#include "host/Fixed.h"
#include "host/Iterator.h"
#include "host/SuiteHandler.h"
#include "host/Vector.h"
#include "kernels/ChannelSample.h"
#include "kernels/Filter.h"

// The image, and the handler that supplies its sampling suite; neither is owned.
struct CustomFilterInfo {
    AEGP_SuiteHandler* suites;
    PF_LayerDef* world;
};

template <class Pixel, class Bank>
class CustomFilter;

// Fills the bank: the kernel of lane l is the image, scaled so that its longer side spans the
// diameter of that layer's blur, and stored point-mirrored, which the multiplication undoes. Item i
// of the iteration is block position i of all lanes. `Pixel` is the image's own pixel type. The
// threads' totals are in host memory, freed on destruction.
template <class Pixel, std::size_t N>
class CustomFilter<Pixel, Filter<N>> {
public:
    // Keeps pointers to its arguments and asks the host for its thread count.
    CustomFilter(AEO::InData& in, PF_InData* inData, const RenderInfo& info, Filter<N>& filter,
                 CustomFilterInfo& custom);

    // Computes block position `index` of every kernel and returns the status of the last sampling
    // call. `thread` is below the host's thread count. Throws 516 when the host lacks the suite.
    int iterate(int thread, int index, int count);

    // Replaces each kernel whose total is 0 with the unit impulse, which passes its layer's pixels
    // unblurred. To be called once, after the iteration.
    void resetZeroFilter();

    // The factor that scales kernel `layer` to the sum 1 / (B * B), which cancels the gain of the
    // forward and the inverse transform; 1 for a total that isn't positive. To be called after
    // resetZeroFilter().
    double getNormalizeFactor(std::size_t layer) const;

private:
    // A block position as offsets from the kernel's origin: dx grows to the right, dy upwards.
    struct Offset {
        double dx;
        double dy;
    };

    static PF_SampPB makeSampling(double scale, double pixelAspect, PF_LayerDef* picture);
    static void setRadii(PF_SampPB& block, double x, double y);
    Offset offsetAt(int index) const;
    PF_Err sample(const Offset& offset, double factor, Pixel& pixel) const;
    double total(std::size_t layer) const;

    PF_InData* inData_;
    const RenderInfo* info_;
    double scale;         // image pixels per kernel pixel for a factor of 1
    PF_SampPB sampling_;  // the box of one kernel pixel for a factor of 1
    Filter<N>* filter_;
    AEO::Vector<ET::vecT<double, N>> sums;  // each thread's totals of the kernels
    CustomFilterInfo* custom_;
    PF_Err status_ = PF_Err_NONE;  // what iterate() returns if there are no totals to add to
};

template <class Pixel, std::size_t N>
CustomFilter<Pixel, Filter<N>>::CustomFilter(AEO::InData& in, PF_InData* inData,
                                             const RenderInfo& info, Filter<N>& filter,
                                             CustomFilterInfo& custom)
    : inData_(inData),
      info_(&info),
      scale(std::max(custom.world->width, custom.world->height) / (info.radius + info.radius)),
      sampling_(makeSampling(scale, info.pixelAspect, custom.world)),
      filter_(&filter),
      sums(in),
      custom_(&custom) {
    const int threads = AEO::Iterator::GetNumThreads(*inData->pica_basicP, status_);
    if (status_ != PF_Err_NONE) return;
    sums.resize(static_cast<std::size_t>(threads));
    if (sums.data() == nullptr) status_ = PF_Err_OUT_OF_MEMORY;
}

template <class Pixel, std::size_t N>
int CustomFilter<Pixel, Filter<N>>::iterate(int thread, int index, int) {
    if (status_ != PF_Err_NONE) return status_;
    const auto position = static_cast<std::size_t>(index);
    const Offset offset = offsetAt(index);
    ET::vecT<double, N>& totals = sums[static_cast<std::size_t>(thread)];
    PF_Err err = PF_Err_NONE;
    for (std::size_t l = 0; l < N; ++l) {
        Pixel pixel{};
        err = sample(offset, getNFactor<N>(l), pixel);
        const double value = channelWeight(pixel, info_->customChannel);
        (*filter_)[2 * position][l] = value;
        (*filter_)[2 * position + 1][l] = 0.0;
        totals[l] += value;
    }
    return err;
}

template <class Pixel, std::size_t N>
void CustomFilter<Pixel, Filter<N>>::resetZeroFilter() {
    if (status_ != PF_Err_NONE) return;
    for (std::size_t l = 0; l < N; ++l) {
        if (total(l) != 0.0) continue;
        (*filter_)[0][l] = 1.0;
        sums[0][l] = 1.0;
    }
}

template <class Pixel, std::size_t N>
double CustomFilter<Pixel, Filter<N>>::getNormalizeFactor(std::size_t layer) const {
    const double d = static_cast<double>(filter_->size * filter_->size) * total(layer);
    return d > 0.0 ? 1.0 / d : 1.0;
}

// Half a kernel pixel to either side. The horizontal radius divides by the pixel aspect where the
// position multiplies by it; an aspect of 0 makes it infinite, which is clamped to the largest
// radius.
template <class Pixel, std::size_t N>
PF_SampPB CustomFilter<Pixel, Filter<N>>::makeSampling(double scale, double pixelAspect,
                                                       PF_LayerDef* picture) {
    PF_SampPB block{};
    setRadii(block, scale * 0.5 / pixelAspect, scale * 0.5);
    block.src = picture;
    return block;
}

template <class Pixel, std::size_t N>
void CustomFilter<Pixel, Filter<N>>::setRadii(PF_SampPB& block, double x, double y) {
    block.x_radius = AEO::toFixedRadius(x);
    block.y_radius = AEO::toFixedRadius(y);
    block.area = AEO::wrappingArea(block.x_radius, block.y_radius);
}

template <class Pixel, std::size_t N>
auto CustomFilter<Pixel, Filter<N>>::offsetAt(int index) const -> Offset {
    const int size = static_cast<int>(filter_->size);
    const int row = index / size;
    const int col = index % size;
    const int half = size / 2;
    return {static_cast<double>(col < half ? col : col - size),
            static_cast<double>(row < half ? -row : size - row)};
}

// Samples the image at the mirrored position of `offset`, for a layer with `factor` of the radius.
// Positions of sharp layers exceed 16.16 by far; clamped, they are still far outside the image.
template <class Pixel, std::size_t N>
PF_Err CustomFilter<Pixel, Filter<N>>::sample(const Offset& offset, double factor,
                                              Pixel& pixel) const {
    const double px = custom_->world->width * 0.5 - info_->pixelAspect * offset.dx * scale / factor;
    const double py = custom_->world->height * 0.5 + offset.dy * scale / factor;
    PF_SampPB block = sampling_;
    setRadii(block, AEO::fromFixed(sampling_.x_radius) / factor,
             AEO::fromFixed(sampling_.y_radius) / factor);
    return areaSample(*custom_->suites, inData_->effect_ref, AEO::toFixed(px), AEO::toFixed(py),
                      block, pixel);
}

template <class Pixel, std::size_t N>
double CustomFilter<Pixel, Filter<N>>::total(std::size_t layer) const {
    double sum = 0.0;
    for (std::size_t t = 0; t < sums.size(); ++t) sum += sums[t][layer];
    return sum;
}
