// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/FileEnds.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>

#include "pictures/Errors.h"

namespace pictures {
namespace {

constexpr std::size_t kHeaderBytes = 1024;

// The start of a file, with numbers in one of both byte orders.
class Header {
public:
    explicit Header(const std::filesystem::path& file) {
        std::ifstream(file, std::ios::binary).read(bytes_.data(), kHeaderBytes);
    }

    void useByteOrder(std::endian order) { order_ = order; }
    std::uint32_t byte(std::size_t at) const { return number<1>(at); }
    std::uint32_t word(std::size_t at) const { return number<2>(at); }
    std::uint32_t longWord(std::size_t at) const { return number<4>(at); }

private:
    template <std::size_t kBytes>
    std::uint32_t number(std::size_t at) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < kBytes; ++i) {
            const std::size_t next = order_ == std::endian::big ? at + i : at + kBytes - 1 - i;
            value = value << 8 | static_cast<unsigned char>(bytes_[next]);
        }
        return value;
    }

    std::array<char, kHeaderBytes> bytes_{};
    std::endian order_ = std::endian::big;
};

// Bytes of `values` samples. Filled: three of 10 bits in four bytes, one of 12 bits in two.
std::uint64_t sampleBytes(std::uint64_t values, std::uint32_t bits, bool filled) {
    if (filled && bits == 10) return (values + 2) / 3 * 4;
    if (filled && bits == 12) return values * 2;
    return values * bits / 8;
}

// Samples of a pixel, by the element's descriptor.
std::uint64_t samplesPerPixel(std::uint32_t descriptor) {
    switch (descriptor) {
        case 50:   // red, green, blue
        case 102:  // 4:4:4
            return 3;
        case 51:  // with alpha, in either order
        case 52:
        case 103:
            return 4;
        case 100:  // 4:2:2
            return 2;
        default:
            return 1;
    }
}

// The least size of a DPX file; 0 if it can't be known.
std::uint64_t dpxSize(Header& header) {
    constexpr std::uint32_t kBigEndian = 0x53445058;  // "SDPX"
    if (header.longWord(0) != kBigEndian) header.useByteOrder(std::endian::little);
    const bool runLengths = header.word(806) != 0;
    if (runLengths) return 0;
    const std::uint64_t pixels = std::uint64_t{header.longWord(772)} * header.longWord(776);
    const std::uint64_t samples = pixels * samplesPerPixel(header.byte(800));
    return header.longWord(4) + sampleBytes(samples, header.byte(803), header.word(804) != 0);
}

// The least size of a Cineon file, whose samples have 10 bits in practice.
std::uint64_t cineonSize(Header& header) {
    constexpr std::uint32_t kBigEndian = 0x802A5FD7;
    if (header.longWord(0) != kBigEndian) header.useByteOrder(std::endian::little);
    const std::uint64_t pixels = std::uint64_t{header.longWord(200)} * header.longWord(204);
    return header.longWord(4) +
           sampleBytes(pixels * header.byte(193), header.byte(198), header.byte(198) == 10);
}

// Big-endian numbers of a file, one after the other; 0 beyond its end, which at() then exceeds.
class Numbers {
public:
    explicit Numbers(const std::filesystem::path& file) : file_(file, std::ios::binary) {}

    std::uint64_t next(int bytes) {
        std::uint64_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            const int byte = file_.get();
            value = value << 8 | static_cast<std::uint64_t>(file_ ? byte : 0);
        }
        at_ += static_cast<std::uint64_t>(bytes);
        return value;
    }
    void skip(std::uint64_t bytes) {
        at_ += bytes;
        file_.seekg(static_cast<std::streamoff>(at_));
    }
    void skipPast(unsigned char byte) {
        file_.ignore(std::numeric_limits<std::streamsize>::max(), byte);
        at_ += static_cast<std::uint64_t>(file_.gcount());
    }
    std::uint64_t at() const { return at_; }
    bool ended() const { return !file_; }

private:
    std::ifstream file_;
    std::uint64_t at_ = 0;
};

// The least size of a PSD or PSB file: its last section holds the merged image, all channels.
std::uint64_t psdSize(const std::filesystem::path& file) {
    Numbers numbers(file);
    numbers.skip(4);
    const bool large = numbers.next(2) == 2;
    numbers.skip(6);
    const std::uint64_t channels = numbers.next(2);
    const std::uint64_t rows = channels * numbers.next(4);
    const std::uint64_t width = numbers.next(4);
    const std::uint64_t bits = numbers.next(2);
    numbers.skip(2);
    for (const int lengthBytes : {4, 4, large ? 8 : 4}) numbers.skip(numbers.next(lengthBytes));
    const std::uint64_t compression = numbers.next(2);
    if (compression == 0) return numbers.at() + rows * ((width * bits + 7) / 8);
    if (compression != 1) return numbers.at();
    std::uint64_t packed = 0;  // run lengths, after the bytes of each row
    for (std::uint64_t row = 0; row < rows && !numbers.ended(); ++row) {
        packed += numbers.next(large ? 4 : 2);
    }
    return numbers.at() + packed;
}

// The size of a PNG file up to the end of its last chunk. Programs may put something behind it.
std::uint64_t pngSize(const std::filesystem::path& file) {
    constexpr std::uint64_t kLast = 0x49454E44;  // "IEND"
    Numbers numbers(file);
    numbers.skip(8);
    std::uint64_t kind = 0;
    while (kind != kLast && !numbers.ended()) {
        const std::uint64_t length = numbers.next(4);
        kind = numbers.next(4);
        numbers.skip(length + 4);  // with the checksum
    }
    return numbers.at();
}

// The size of a JPEG file up to the marker that ends its first image; cameras put previews behind
// it. In coded pixels, which are between the segments, 0 or a restart marker follows each 0xFF.
std::uint64_t jpegSize(const std::filesystem::path& file) {
    constexpr std::uint64_t kRestart = 0xD0;  // the first marker without a segment
    constexpr std::uint64_t kEnd = 0xD9;      // the last
    Numbers numbers(file);
    numbers.skip(2);
    std::uint64_t marker = 0;
    while (marker != kEnd && !numbers.ended()) {
        numbers.skipPast(0xFF);
        do {
            marker = numbers.next(1);
        } while (marker == 0xFF);
        const bool alone = marker <= 1 || (marker >= kRestart && marker <= kEnd);
        if (!alone) numbers.skip(std::max<std::uint64_t>(numbers.next(2), 2) - 2);
    }
    return numbers.at();
}

void skipColourTable(Numbers& numbers, std::uint64_t flags) {
    if ((flags & 0x80) != 0) numbers.skip(std::uint64_t{3} << ((flags & 7) + 1));
}

// The size of a GIF file up to its trailer, or to the first block of an unknown kind.
std::uint64_t gifSize(const std::filesystem::path& file) {
    constexpr std::uint64_t kExtension = 0x21;
    constexpr std::uint64_t kImage = 0x2C;
    Numbers numbers(file);
    numbers.skip(10);
    const std::uint64_t flags = numbers.next(1);
    numbers.skip(2);
    skipColourTable(numbers, flags);
    for (;;) {
        const std::uint64_t kind = numbers.next(1);
        if (kind == kImage) {
            numbers.skip(8);
            skipColourTable(numbers, numbers.next(1));
        } else if (kind != kExtension) {
            return numbers.at();
        }
        numbers.skip(1);  // the label of an extension, or the code size of an image
        while (const std::uint64_t length = numbers.next(1)) numbers.skip(length);
    }
}

// 0 if it can't be known.
std::uint64_t leastSize(const std::filesystem::path& file, const std::string& format) {
    if (format == "png") return pngSize(file);
    if (format == "jpeg") return jpegSize(file);
    if (format == "gif") return gifSize(file);
    if (format == "psd") return psdSize(file);
    if (format != "dpx" && format != "cineon") return 0;
    Header header(file);
    return format == "dpx" ? dpxSize(header) : cineonSize(header);
}

// The formats in which missing pixels are noticed, by their readers or by leastSize().
constexpr std::array<const char*, 23> kReadFormats{
    "bmp",  "cineon", "dds", "dicom", "dpx",   "fits", "gif",      "hdr",
    "heif", "ico",    "iff", "jpeg",  "png",   "pnm",  "jpeg2000", "openexr",
    "psd",  "raw",    "rla", "sgi",   "targa", "tiff", "webp"};

}  // namespace

void requireReadFormat(const std::filesystem::path& file, const std::string& format) {
    if (std::find(kReadFormats.begin(), kReadFormats.end(), format) != kReadFormats.end()) return;
    throw Failure(file.string() + " has the format " + format +
                  ", which isn't read, since an early end would go unnoticed; convert it to EXR, "
                  "TIFF or PNG");
}

void requireWholeFile(const std::filesystem::path& file, const std::string& format) {
    const std::uint64_t least = leastSize(file, format);
    if (std::filesystem::file_size(file) >= least) return;
    throw Failure(file.string() + " ends early: it should have at least " + std::to_string(least) +
                  " bytes; get a whole copy of the file");
}

bool isHarmless(const std::string& format, std::string_view message) {
    return format == "jpeg" && message.find("remature end") == std::string_view::npos;
}

}  // namespace pictures
