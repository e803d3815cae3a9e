// SPDX-License-Identifier: Apache-2.0
#pragma once
// Pixel buffers of the host: input, output, layers, and the worlds that the effect requests.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/Worlds.h"

namespace headless {

struct WorldOptions {
    int originX = 0;     // left edge of the buffer in its layer, in pixels
    int originY = 0;     // top edge
    int rowPadding = 0;  // bytes after each row, rounded up to a multiple of 16
};

// Bytes per pixel of `format`, or 0 if it is no known pixel format.
int bytesPerPixel(PF_PixelFormat format);
// The format with 8, 16 or 32 bits per channel. Throws std::invalid_argument for other numbers.
PF_PixelFormat formatOfBits(int bits);
// The reverse: 8, 16 or 32.
int bitsOfFormat(PF_PixelFormat format);

// A buffer that owns its pixels, which are initially zero. The row padding and a strip before and
// after the pixels hold a pattern that is NaN in float, so that stray reads and stray writes are
// noticed. The first word of the record (`reserved0`) is the address of the world's identity: it
// tells the effect that a layer is chosen, and PF_GetPixelFormat finds the world by it, also from a
// copy of the record.
class World {
public:
    // Throws std::length_error for sizes that a record can't hold and std::bad_alloc if there isn't
    // enough memory. A width or height of 0 is allowed.
    World(int width, int height, PF_PixelFormat format, const WorldOptions& options = {});
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    int width() const { return layerRecord_.width; }
    int height() const { return layerRecord_.height; }
    int rowBytes() const { return layerRecord_.rowbytes; }
    PF_PixelFormat format() const { return identity_.format; }
    PF_LRect rect() const;  // in the layer: origin and size

    // The record as the effect gets it; valid as long as the world exists.
    PF_LayerDef* layer() { return &layerRecord_; }
    PF_LayerDef record() const { return layerRecord_; }

    // Row y as pixels of the world's own type (PF_Pixel, PF_Pixel16 or PF_PixelFloat).
    template <class Pixel>
    Pixel* row(int y) {
        return reinterpret_cast<Pixel*>(bytesOfRow(y));
    }
    template <class Pixel>
    const Pixel* row(int y) const {
        return reinterpret_cast<const Pixel*>(bytesOfRow(y));
    }
    std::byte* bytesOfRow(int y);
    const std::byte* bytesOfRow(int y) const;

    // One pixel with channels 0 to 1 (unbounded in float) in every format. Writing rounds to the
    // nearest step and clamps. Meant for tests and small images.
    PF_PixelFloat get(int x, int y) const;
    void set(int x, int y, const PF_PixelFloat& pixel);
    void fill(const PF_PixelFloat& pixel);

    // Fills all pixels with the guard pattern, by which pixels that are never written can be found.
    void fillWithPattern();
    // Whether every pixel still holds that pattern.
    bool holdsPatternOnly() const;
    // Describes damage to the padding and the guard strips; empty if there is none.
    std::string damage() const;

    // Bytes of pixels and padding.
    std::uint64_t bytes() const;

    // What `reserved0` points to.
    struct Identity {
        std::uint64_t magic;
        PF_PixelFormat format;
    };
    // The format of a record of an existing world, otherwise PF_PixelFormat_INVALID.
    static PF_PixelFormat formatOf(const PF_LayerDef& record);

private:
    std::ptrdiff_t bytesOfPixels(int count) const;
    std::size_t pixelBytesOfRow() const;  // without the padding

    Identity identity_;
    PF_LayerDef layerRecord_;
    struct Release {
        void operator()(std::byte* memory) const;
    };
    std::unique_ptr<std::byte, Release> memory_;  // guard strip, rows, guard strip
};

// Reads and writes one pixel of any format with channels 0 to 1, like World::get and World::set.
PF_PixelFloat readPixel(const std::byte* source, PF_PixelFormat format);
void writePixel(std::byte* destination, PF_PixelFormat format, const PF_PixelFloat& pixel);

// `rect` of `source`, reduced by `x` and `y` (num/den, at most 1) and converted to `format`: each
// pixel is the mean of the area it covers, colours weighted by alpha. `rect` is in pixels of the
// reduced layer, whose size is reducedSize(); it becomes the new world's origin and size.
std::shared_ptr<World> reduce(const World& source, PF_RationalScale x, PF_RationalScale y,
                              const PF_LRect& rect, PF_PixelFormat format, int rowPadding = 0);
// ceil(size * num / den)
int reducedSize(int size, PF_RationalScale scale);

}  // namespace headless
