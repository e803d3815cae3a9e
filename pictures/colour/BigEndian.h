// SPDX-License-Identifier: Apache-2.0
#pragma once
// Numbers as PNG chunks and ICC profiles store them.

#include <cstddef>
#include <cstdint>
#include <span>

namespace pictures {

using Bytes = std::span<const unsigned char>;

// The numbers at `offset`; the caller checks that they are inside.
inline std::uint16_t bigEndian16(Bytes bytes, std::size_t offset) {
    return static_cast<std::uint16_t>(bytes[offset] << 8U | bytes[offset + 1]);
}

inline std::uint32_t bigEndian32(Bytes bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(bigEndian16(bytes, offset)) << 16U |
           bigEndian16(bytes, offset + 2);
}

}  // namespace pictures
