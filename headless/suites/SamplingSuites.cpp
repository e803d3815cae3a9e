// SPDX-License-Identifier: Apache-2.0
// The three sampling suites, which differ only in their pixel type.

#include "headless/state/HostState.h"
#include "headless/suites/Sampling.h"
#include "headless/suites/Suites.h"
#include "platform/Fixed.h"

namespace headless {

namespace {

// Whether the source can be read as pixels of this type without leaving its rows.
template <class Pixel>
bool isReadable(const PF_SampPB* params) {
    if (!params || !params->src || !params->src->data) return false;
    const PF_LayerDef& world = *params->src;
    const auto needed = static_cast<std::int64_t>(world.width) * std::int64_t{sizeof(Pixel)};
    return world.width >= 0 && world.height >= 0 && world.rowbytes >= needed;
}

bool isRadius(PF_Fixed radius) {
    return radius >= 0 && radius <= kMaxFixedRadius;
}

// Makes the checks that all three functions share, and stores the result of `sample`.
template <class Pixel, class Sample>
PF_Err checkedSample(PF_ProgPtr effectRef, const PF_SampPB* params, Pixel* pixel,
                     const char* operation, Operation failing, Sample&& sample) {
    return guarded([&] {
        if (!contextOf(effectRef, operation) || !pixel || !isReadable<Pixel>(params)) {
            HostState::current().books.fault(std::string(operation) + " with bad arguments");
            return PF_Err_BAD_CALLBACK_PARAM;
        }
        if (const PF_Err err = HostState::current().failures.check(failing)) return err;
        *pixel = sample(*params->src);
        return PF_Err_NONE;
    });
}

template <class Pixel>
PF_Err nnSample(PF_ProgPtr effectRef, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                Pixel* pixel) {
    return checkedSample(
        effectRef, params, pixel, "nn_sample", Operation::kSubpixelSample,
        [&](const PF_LayerDef& world) { return nearestSample<Pixel>(world, x, y); });
}

template <class Pixel>
PF_Err subpixelSampleOf(PF_ProgPtr effectRef, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                        Pixel* pixel) {
    return checkedSample(
        effectRef, params, pixel, "subpixel_sample", Operation::kSubpixelSample,
        [&](const PF_LayerDef& world) { return subpixelSample<Pixel>(world, x, y); });
}

// A radius of 0 becomes the smallest possible box.
template <class Pixel>
PF_Err areaSampleOf(PF_ProgPtr effectRef, PF_Fixed x, PF_Fixed y, const PF_SampPB* params,
                    Pixel* pixel) {
    if (params && !(isRadius(params->x_radius) && isRadius(params->y_radius))) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    return checkedSample(effectRef, params, pixel, "area_sample", Operation::kAreaSample,
                         [&](const PF_LayerDef& world) {
                             return areaSample<Pixel>(world, x, y,
                                                      std::max(params->x_radius, kMinFixedRadius),
                                                      std::max(params->y_radius, kMinFixedRadius));
                         });
}

template <class Table, class Pixel>
constexpr Table kTable{nnSample<Pixel>, subpixelSampleOf<Pixel>, areaSampleOf<Pixel>};

}  // namespace

const PF_Sampling8Suite1* sampling8Suite() {
    return &kTable<PF_Sampling8Suite1, PF_Pixel>;
}

const PF_Sampling16Suite1* sampling16Suite() {
    return &kTable<PF_Sampling16Suite1, PF_Pixel16>;
}

const PF_SamplingFloatSuite1* samplingFloatSuite() {
    return &kTable<PF_SamplingFloatSuite1, PF_PixelFloat>;
}

}  // namespace headless
