// SPDX-License-Identifier: Apache-2.0
#include "pictures/colour/PngColour.h"

#include <algorithm>
#include <istream>
#include <string_view>
#include <vector>

#include "pictures/colour/BigEndian.h"

namespace pictures {
namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::uint32_t kLongestOfInterest = 32;  // bytes of cHRM

// Up to `count` bytes; fewer at the end of the file.
std::vector<unsigned char> take(std::istream& file, std::size_t count) {
    std::vector<unsigned char> bytes(count);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

std::string_view asText(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// The chunk has white first.
std::array<double, 8> primariesOf(Bytes data) {
    std::array<double, 8> primaries{};
    for (std::size_t i = 0; i < 8; ++i) primaries[(i + 6) % 8] = bigEndian32(data, 4 * i) / 1e5;
    return primaries;
}

void interpret(PngColour& colour, std::string_view type, Bytes data) {
    if (type == "cICP" && data.size() == 4) {
        colour.cicp = {data[0], data[1], data[2], data[3]};
    } else if (type == "sRGB") {
        colour.srgb = true;
    } else if (type == "gAMA" && data.size() == 4 && bigEndian32(data, 0) > 0) {
        colour.gamma = 1e5 / bigEndian32(data, 0);
    } else if (type == "cHRM" && data.size() == 32) {
        colour.primaries = primariesOf(data);
    }
}

}  // namespace

PngColour readPngColour(std::istream& file) {
    PngColour colour;
    if (asText(take(file, kSignature.size())) != kSignature) return colour;
    for (;;) {
        const std::vector<unsigned char> head = take(file, 8);
        const std::string_view type = asText(head).substr(std::min<std::size_t>(4, head.size()));
        if (head.size() < 8 || type == "IDAT" || type == "IEND") return colour;
        const std::uint32_t length = bigEndian32(head, 0);
        const std::uint32_t wanted = length <= kLongestOfInterest ? length : 0;
        const std::vector<unsigned char> data = take(file, wanted);
        if (data.size() < wanted) return colour;
        interpret(colour, type, data);
        constexpr std::uint32_t kChecksum = 4;
        file.seekg(static_cast<std::streamoff>(length - wanted) + kChecksum, std::ios::cur);
    }
}

}  // namespace pictures
