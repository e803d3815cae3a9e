// SPDX-License-Identifier: Apache-2.0
#include "trial/FrameFile.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string>

namespace trial {

namespace {

static_assert(std::endian::native == std::endian::little,
              "numbers in frame files are little-endian");

constexpr const char* kMagic = "orbel-frame";

std::size_t pixelBytes(const Frame& frame) {
    return frame.values() * static_cast<std::size_t>(frame.bits) / 8;
}

template <class Number>
double numberAt(const std::vector<std::byte>& bytes, std::size_t index) {
    Number number;
    std::memcpy(&number, bytes.data() + index * sizeof number, sizeof number);
    return static_cast<double>(number);
}

[[noreturn]] void refuse(const std::filesystem::path& file, const std::string& why) {
    throw std::runtime_error(file.string() + " " + why);
}

bool plausible(const Frame& frame) {
    const auto side = [](int pixels) { return pixels > 0 && pixels <= 65536; };
    return side(frame.width) && side(frame.height) &&
           (frame.bits == 8 || frame.bits == 16 || frame.bits == 32);
}

}  // namespace

double Frame::value(std::size_t index) const {
    if (bits == 8) return numberAt<std::uint8_t>(pixels, index);
    if (bits == 16) return numberAt<std::uint16_t>(pixels, index);
    return numberAt<float>(pixels, index);
}

Frame frameOf(const headless::World& world) {
    Frame frame{world.width(), world.height(), headless::bitsOfFormat(world.format()), {}};
    const auto row = static_cast<std::ptrdiff_t>(frame.width) * kChannels * frame.bits / 8;
    for (int y = 0; y < frame.height; ++y) {
        const std::byte* begin = world.bytesOfRow(y);
        frame.pixels.insert(frame.pixels.end(), begin, begin + row);
    }
    return frame;
}

void writeFrame(const Frame& frame, const std::filesystem::path& file) {
    std::ofstream out(file, std::ios::binary);
    out << kMagic << ' ' << frame.width << ' ' << frame.height << ' ' << frame.bits << '\n';
    out.write(reinterpret_cast<const char*>(frame.pixels.data()),
              static_cast<std::streamsize>(frame.pixels.size()));
    out.close();
    if (!out) refuse(file, "can't be written");
}

Frame readFrame(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) refuse(file, "can't be read");
    std::string magic;
    Frame frame;
    in >> magic >> frame.width >> frame.height >> frame.bits;
    if (!in || magic != kMagic || in.get() != '\n' || !plausible(frame))
        refuse(file, "is not a frame");
    frame.pixels.resize(pixelBytes(frame));
    in.read(reinterpret_cast<char*>(frame.pixels.data()),
            static_cast<std::streamsize>(frame.pixels.size()));
    if (!in || in.peek() != std::ifstream::traits_type::eof()) {
        refuse(file, "doesn't have the length that its first line states");
    }
    return frame;
}

}  // namespace trial
