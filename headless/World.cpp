// SPDX-License-Identifier: Apache-2.0
#include "headless/World.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <stdexcept>
#include <unordered_set>

namespace headless {

namespace {

constexpr std::uint64_t kWorldMagic = 0x444c524f574c4f48;  // "HOLWORLD"
constexpr std::size_t kGuard = 64;                         // bytes before and after the rows
// Little-endian bytes of a NaN in float, and an unlikely colour in the integer formats.
constexpr std::array<unsigned char, 4> kPattern{0xFB, 0x7F, 0xC5, 0xFF};

// The identities of all existing worlds. Any other pointer in a record must not be followed.
struct Registry {
    std::mutex mutex;
    std::unordered_set<const void*> identities;
};

Registry& registry() {
    static Registry all;
    return all;
}

void writePattern(std::byte* begin, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) begin[i] = std::byte{kPattern[i % kPattern.size()]};
}

bool isPattern(const std::byte* begin, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        if (begin[i] != std::byte{kPattern[i % kPattern.size()]}) return false;
    }
    return true;
}

int paddedRowBytes(int width, PF_PixelFormat format, int padding) {
    const std::int64_t pixel = bytesPerPixel(format);
    if (pixel == 0) throw std::invalid_argument("unknown pixel format");
    if (width < 0 || padding < 0) throw std::length_error("negative size of a world");
    const std::int64_t rounded = (static_cast<std::int64_t>(padding) + 15) / 16 * 16;
    const std::int64_t bytes = width * pixel + rounded;
    if (bytes > INT32_MAX) throw std::length_error("row of a world too long");
    return static_cast<int>(bytes);
}

// The nearest step from 0 to `scale`; NaN becomes 0.
float clampedStep(float value, float scale) {
    const float step = std::floor(value * scale + 0.5F);
    return step > 0 ? std::min(step, scale) : 0.0F;
}

template <class Pixel, class Channel>
Pixel quantised(const PF_PixelFloat& p, float scale) {
    return {static_cast<Channel>(clampedStep(p.alpha, scale)),
            static_cast<Channel>(clampedStep(p.red, scale)),
            static_cast<Channel>(clampedStep(p.green, scale)),
            static_cast<Channel>(clampedStep(p.blue, scale))};
}

template <class Pixel>
PF_PixelFloat expanded(const std::byte* source, float scale) {
    Pixel p;
    std::memcpy(&p, source, sizeof p);
    return {static_cast<float>(p.alpha) / scale, static_cast<float>(p.red) / scale,
            static_cast<float>(p.green) / scale, static_cast<float>(p.blue) / scale};
}

}  // namespace

int bytesPerPixel(PF_PixelFormat format) {
    switch (format) {
        case PF_PixelFormat_ARGB32:
            return sizeof(PF_Pixel);
        case PF_PixelFormat_ARGB64:
            return sizeof(PF_Pixel16);
        case PF_PixelFormat_ARGB128:
            return sizeof(PF_PixelFloat);
        default:
            return 0;
    }
}

PF_PixelFormat formatOfBits(int bits) {
    switch (bits) {
        case 8:
            return PF_PixelFormat_ARGB32;
        case 16:
            return PF_PixelFormat_ARGB64;
        case 32:
            return PF_PixelFormat_ARGB128;
        default:
            throw std::invalid_argument("a channel has 8, 16 or 32 bits");
    }
}

int bitsOfFormat(PF_PixelFormat format) {
    return bytesPerPixel(format) * 2;
}

PF_PixelFloat readPixel(const std::byte* source, PF_PixelFormat format) {
    if (format == PF_PixelFormat_ARGB32) return expanded<PF_Pixel>(source, PF_MAX_CHAN8);
    if (format == PF_PixelFormat_ARGB64) return expanded<PF_Pixel16>(source, PF_MAX_CHAN16);
    return expanded<PF_PixelFloat>(source, 1.0F);
}

void writePixel(std::byte* destination, PF_PixelFormat format, const PF_PixelFloat& pixel) {
    if (format == PF_PixelFormat_ARGB32) {
        const auto p = quantised<PF_Pixel, A_u_char>(pixel, PF_MAX_CHAN8);
        std::memcpy(destination, &p, sizeof p);
    } else if (format == PF_PixelFormat_ARGB64) {
        const auto p = quantised<PF_Pixel16, std::uint16_t>(pixel, PF_MAX_CHAN16);
        std::memcpy(destination, &p, sizeof p);
    } else {
        std::memcpy(destination, &pixel, sizeof pixel);
    }
}

void World::Release::operator()(std::byte* block) const {
    std::free(block);
}

World::World(int width, int height, PF_PixelFormat format, const WorldOptions& options)
    : identity_{kWorldMagic, format}, layerRecord_{} {
    layerRecord_.rowbytes = paddedRowBytes(width, format, options.rowPadding);
    if (height < 0) throw std::length_error("negative size of a world");

    // A zeroed block costs nothing until its pages are used.
    const auto size =
        static_cast<std::size_t>(layerRecord_.rowbytes) * static_cast<std::size_t>(height);
    memory_.reset(static_cast<std::byte*>(std::calloc(size + 2 * kGuard, 1)));
    if (!memory_) throw std::bad_alloc();

    layerRecord_.reserved0 = &identity_;
    layerRecord_.world_flags = PF_WorldFlag_WRITEABLE;
    if (format == PF_PixelFormat_ARGB64) layerRecord_.world_flags |= PF_WorldFlag_DEEP;
    layerRecord_.data = memory_.get() + kGuard;
    layerRecord_.width = width;
    layerRecord_.height = height;
    layerRecord_.extent_hint = {0, 0, width, height};
    layerRecord_.pix_aspect_ratio = {1, 1};
    layerRecord_.origin_x = options.originX;
    layerRecord_.origin_y = options.originY;

    const std::size_t used = pixelBytesOfRow();
    const auto row = static_cast<std::size_t>(layerRecord_.rowbytes);
    writePattern(memory_.get(), kGuard);
    writePattern(memory_.get() + kGuard + size, kGuard);
    if (used < row) {
        for (int y = 0; y < height; ++y) writePattern(bytesOfRow(y) + used, row - used);
    }

    const std::lock_guard lock(registry().mutex);
    registry().identities.insert(&identity_);
}

World::~World() {
    const std::lock_guard lock(registry().mutex);
    registry().identities.erase(&identity_);
}

PF_LRect World::rect() const {
    return {layerRecord_.origin_x, layerRecord_.origin_y,
            layerRecord_.origin_x + layerRecord_.width,
            layerRecord_.origin_y + layerRecord_.height};
}

std::byte* World::bytesOfRow(int y) {
    return memory_.get() + kGuard + static_cast<std::ptrdiff_t>(y) * layerRecord_.rowbytes;
}

const std::byte* World::bytesOfRow(int y) const {
    return memory_.get() + kGuard + static_cast<std::ptrdiff_t>(y) * layerRecord_.rowbytes;
}

std::size_t World::pixelBytesOfRow() const {
    return static_cast<std::size_t>(bytesOfPixels(width()));
}

std::ptrdiff_t World::bytesOfPixels(int count) const {
    return static_cast<std::ptrdiff_t>(count) * bytesPerPixel(identity_.format);
}

PF_PixelFloat World::get(int x, int y) const {
    return readPixel(bytesOfRow(y) + bytesOfPixels(x), identity_.format);
}

void World::set(int x, int y, const PF_PixelFloat& pixel) {
    writePixel(bytesOfRow(y) + bytesOfPixels(x), identity_.format, pixel);
}

void World::fill(const PF_PixelFloat& pixel) {
    for (int y = 0; y < height(); ++y) {
        for (int x = 0; x < width(); ++x) set(x, y, pixel);
    }
}

void World::fillWithPattern() {
    const std::size_t used = pixelBytesOfRow();
    for (int y = 0; y < height(); ++y) writePattern(bytesOfRow(y), used);
}

bool World::holdsPatternOnly() const {
    const std::size_t used = pixelBytesOfRow();
    for (int y = 0; y < height(); ++y) {
        if (!isPattern(bytesOfRow(y), used)) return false;
    }
    return true;
}

std::string World::damage() const {
    if (!isPattern(memory_.get(), kGuard)) return "bytes before the first row were written";
    if (!isPattern(bytesOfRow(height()), kGuard)) return "bytes after the last row were written";
    const std::size_t used = pixelBytesOfRow();
    const auto row = static_cast<std::size_t>(rowBytes());
    for (int y = 0; y < height(); ++y) {
        if (!isPattern(bytesOfRow(y) + used, row - used)) {
            return "padding of row " + std::to_string(y) + " was written";
        }
    }
    return {};
}

std::uint64_t World::bytes() const {
    return static_cast<std::uint64_t>(rowBytes()) * static_cast<std::uint64_t>(height());
}

PF_PixelFormat World::formatOf(const PF_LayerDef& record) {
    const std::lock_guard lock(registry().mutex);
    if (registry().identities.count(record.reserved0) == 0) return PF_PixelFormat_INVALID;
    return static_cast<const Identity*>(record.reserved0)->format;
}

}  // namespace headless
