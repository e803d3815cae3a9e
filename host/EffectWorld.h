// SPDX-License-Identifier: Apache-2.0
#pragma once
// Wrappers of the host's pixel buffers.

#include <cstdint>

#include "host/AEO_Base.h"
#include "host/Pixel.h"
#include "host/SuiteHolder.h"

namespace AEO {

// Wraps one pixel buffer of the host without owning its pixels: knows the pixel format, and samples
// at positions in double precision. Valid as long as its context and the pixels are.
//
// `_err` keeps the first error that the host returns, and the operation goes on regardless. The
// destructor releases the world suite and ignores `_err`.
class EffectWorld : public ObjectBase {
public:
    PF_LayerDef world;  // a copy of the host's record
    SuiteHolder<PF_WorldSuite2> worldSuite;
    PixelFormat::e format = PixelFormat::kUnknown;
    std::int32_t bytesPerPixel = 0;     // 0 for an unknown format
    Pixel::Reader fromPixel = nullptr;  // null for an unknown format
    Pixel::Writer toPixel = nullptr;    // null for an unknown format

    // Wraps nothing; the format is unknown.
    explicit EffectWorld(InData& context);
    // Copies the record and asks the host for its format.
    EffectWorld(InData& context, const PF_LayerDef& layer);
    ~EffectWorld() override = default;

    // Asks the host for the format and sets the four fields that depend on it. A format that this
    // class doesn't know is no error. Returns `_err`.
    int checkFormat();

    // Samples at (x, y) in pixels; pixel i has its centre at i. The area is the box that extends
    // radiusX and radiusY to either side, each clamped to the range from 1/65536 to 128 pixels. May
    // be called from worker threads. After a failure, which `_err` reports, the result is
    // meaningless.
    //
    // The forms without a suffix choose the suite by the format, float for an unknown one, and
    // return the channels of integer formats on the scale 0 to 1.
    Pixel::f32 subpixel_sample(double x, double y) const;
    Pixel::f32 area_sample(double x, double y, double radiusX, double radiusY) const;
    // For many samples of the same size: `box` is made by boxParams of this world.
    Pixel::f32 area_sample(double x, double y, const PF_SampPB& box) const;
    PF_SampPB boxParams(double radiusX, double radiusY) const;

    // The same in the world's own pixel type; the caller has to make sure that the format matches.
    PF_Pixel subpixel_sample8(double x, double y) const;
    PF_Pixel16 subpixel_sample16(double x, double y) const;
    PF_PixelFloat subpixel_sample_float(double x, double y) const;
    PF_Pixel area_sample8(double x, double y, double radiusX, double radiusY) const;
    PF_Pixel16 area_sample16(double x, double y, double radiusX, double radiusY) const;
    PF_PixelFloat area_sample_float(double x, double y, double radiusX, double radiusY) const;

protected:
    // Acquires the world suite if it isn't held. If that fails, its code takes the place of the
    // result of the call that needed the suite.
    bool haveWorldSuite();

private:
    void setPixelAccess(std::int32_t bytes, Pixel::Reader reader, Pixel::Writer writer);
    PF_SampPB pointParams() const;

    template <typename Sampling, typename PixelType>
    PixelType subpixel(double x, double y) const;
    template <typename Sampling, typename PixelType>
    PixelType area(double x, double y, const PF_SampPB& params) const;
};

// A world that owns its pixels. Only sampling may be done on threads other than the command's.
//
// Its destructor ends the process through an assertion if `_err` holds anything but 0 or a cancel,
// so the owner has to take an error over and set `_err` to 0.
class NewEffectWorld : public EffectWorld {
public:
    // Without pixels.
    explicit NewEffectWorld(InData& context);
    // With pixels, as from `allocate`; if the host returns none, `world.data` is null. `_err` holds
    // the error.
    NewEffectWorld(InData& context, int width, int height, PixelFormat::e pixelFormat);
    ~NewEffectWorld() override;

    // Allocates pixels of the given size, uninitialised, after freeing those held before. Returns
    // `_err`.
    int allocate(int width, int height, PixelFormat::e pixelFormat);
    // Frees the pixels if there are any. Returns `_err`.
    int dispose();
};

}  // namespace AEO
