// SPDX-License-Identifier: Apache-2.0
#pragma once
// Files of rendered frames: a line of text, then the pixels as in memory, without row padding.

#include <cstddef>
#include <filesystem>
#include <vector>

#include "headless/World.h"

namespace trial {

inline constexpr const char* kFrameSuffix = ".frame";
inline constexpr int kChannels = 4;  // alpha, red, green, blue

struct Frame {
    int width = 0;
    int height = 0;
    int bits = 8;                   // per channel: 8, 16 or 32
    std::vector<std::byte> pixels;  // rows from the top

    std::size_t values() const {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * kChannels;
    }
    // Channel values as stored: 0 to 255, 0 to 32768, or float.
    double value(std::size_t index) const;
};

Frame frameOf(const headless::World& world);
// Both throw std::runtime_error, naming the file.
void writeFrame(const Frame& frame, const std::filesystem::path& file);
Frame readFrame(const std::filesystem::path& file);

}  // namespace trial
