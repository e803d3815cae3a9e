// SPDX-License-Identifier: Apache-2.0
#include "host/EffectWorld.h"

#include "host/Fixed.h"
#include "host/Sampling.h"

namespace AEO {

namespace {

Pixel::f32 toF32(const PF_Pixel& pixel) {
    return Pixel::FromU8(&pixel);
}
Pixel::f32 toF32(const PF_Pixel16& pixel) {
    return Pixel::FromU16(&pixel);
}
Pixel::f32 toF32(const PF_PixelFloat& pixel) {
    return Pixel::FromF32(&pixel);
}

}  // namespace

EffectWorld::EffectWorld(InData& context)
    : ObjectBase(context), world{}, worldSuite(context.in_data->pica_basicP) {}

EffectWorld::EffectWorld(InData& context, const PF_LayerDef& layer)
    : ObjectBase(context), world(layer), worldSuite(context.in_data->pica_basicP) {
    checkFormat();
}

int EffectWorld::checkFormat() {
    PF_PixelFormat reported = PF_PixelFormat_INVALID;
    if (haveWorldSuite()) keepFirstError(worldSuite.suite->PF_GetPixelFormat(&world, &reported));

    format = static_cast<PixelFormat::e>(reported);
    switch (format) {
        case PixelFormat::kU8:
            setPixelAccess(sizeof(PF_Pixel), Pixel::FromU8, Pixel::setToU8);
            break;
        case PixelFormat::kU16:
            setPixelAccess(sizeof(PF_Pixel16), Pixel::FromU16, Pixel::setToU16);
            break;
        case PixelFormat::kF32:
            setPixelAccess(sizeof(PF_PixelFloat), Pixel::FromF32, Pixel::setToF32);
            break;
        default:
            setPixelAccess(0, nullptr, nullptr);
    }
    return _err;
}

bool EffectWorld::haveWorldSuite() {
    worldSuite.acquire();
    keepFirstError(worldSuite.err);
    return worldSuite.suite != nullptr;
}

void EffectWorld::setPixelAccess(std::int32_t bytes, Pixel::Reader reader, Pixel::Writer writer) {
    bytesPerPixel = bytes;
    fromPixel = reader;
    toPixel = writer;
}

// The host's default sampling parameters for this world. Their `src` isn't const, although sampling
// only reads it.
PF_SampPB EffectWorld::pointParams() const {
    PF_SampPB params{};
    params.src = const_cast<PF_LayerDef*>(&world);
    return params;
}

PF_SampPB EffectWorld::boxParams(double radiusX, double radiusY) const {
    PF_SampPB params = pointParams();
    params.x_radius = toFixedRadius(radiusX);
    params.y_radius = toFixedRadius(radiusY);
    params.area = wrappingArea(params.x_radius, params.y_radius);
    return params;
}

template <typename Sampling, typename PixelType>
PixelType EffectWorld::subpixel(double x, double y) const {
    PixelType pixel{};
    keepFirstError(
        Sampling::subpixel_sample(*inData, toFixed(x), toFixed(y), pointParams(), pixel));
    return pixel;
}

template <typename Sampling, typename PixelType>
PixelType EffectWorld::area(double x, double y, const PF_SampPB& params) const {
    PixelType pixel{};
    keepFirstError(Sampling::area_sample(*inData, toFixed(x), toFixed(y), params, pixel));
    return pixel;
}

Pixel::f32 EffectWorld::subpixel_sample(double x, double y) const {
    switch (format) {
        case PixelFormat::kU8:
            return toF32(subpixel_sample8(x, y));
        case PixelFormat::kU16:
            return toF32(subpixel_sample16(x, y));
        default:
            return toF32(subpixel_sample_float(x, y));
    }
}

Pixel::f32 EffectWorld::area_sample(double x, double y, double radiusX, double radiusY) const {
    return area_sample(x, y, boxParams(radiusX, radiusY));
}

Pixel::f32 EffectWorld::area_sample(double x, double y, const PF_SampPB& box) const {
    switch (format) {
        case PixelFormat::kU8:
            return toF32(area<Sampling8, PF_Pixel>(x, y, box));
        case PixelFormat::kU16:
            return toF32(area<Sampling16, PF_Pixel16>(x, y, box));
        default:
            return toF32(area<SamplingFloat, PF_PixelFloat>(x, y, box));
    }
}

PF_Pixel EffectWorld::subpixel_sample8(double x, double y) const {
    return subpixel<Sampling8, PF_Pixel>(x, y);
}

PF_Pixel16 EffectWorld::subpixel_sample16(double x, double y) const {
    return subpixel<Sampling16, PF_Pixel16>(x, y);
}

PF_PixelFloat EffectWorld::subpixel_sample_float(double x, double y) const {
    return subpixel<SamplingFloat, PF_PixelFloat>(x, y);
}

PF_Pixel EffectWorld::area_sample8(double x, double y, double radiusX, double radiusY) const {
    return area<Sampling8, PF_Pixel>(x, y, boxParams(radiusX, radiusY));
}

PF_Pixel16 EffectWorld::area_sample16(double x, double y, double radiusX, double radiusY) const {
    return area<Sampling16, PF_Pixel16>(x, y, boxParams(radiusX, radiusY));
}

PF_PixelFloat EffectWorld::area_sample_float(double x, double y, double radiusX,
                                             double radiusY) const {
    return area<SamplingFloat, PF_PixelFloat>(x, y, boxParams(radiusX, radiusY));
}

NewEffectWorld::NewEffectWorld(InData& context) : EffectWorld(context) {}

NewEffectWorld::NewEffectWorld(InData& context, int width, int height, PixelFormat::e pixelFormat)
    : EffectWorld(context) {
    allocate(width, height, pixelFormat);
}

NewEffectWorld::~NewEffectWorld() {
    dispose();
    worldSuite.release();
    assertNoErrorStands();
}

int NewEffectWorld::allocate(int width, int height, PixelFormat::e pixelFormat) {
    dispose();
    if (!haveWorldSuite()) return _err;
    constexpr PF_Boolean kClearPixels = 0;
    keepFirstError(worldSuite.suite->PF_NewWorld(inData->in_data->effect_ref, width, height,
                                                 kClearPixels, pixelFormat, &world));
    return checkFormat();
}

int NewEffectWorld::dispose() {
    if (!world.data) return _err;
    if (!haveWorldSuite()) return _err;
    keepFirstError(worldSuite.suite->PF_DisposeWorld(inData->in_data->effect_ref, &world));
    world = {};
    return _err;
}

}  // namespace AEO
