// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>

namespace pictures {

// The rows of a strip of an image: about a million pixels, which is small compared with a large
// image and large compared with a call. Compressed files hold blocks of up to 256 rows, of which
// threads decode several at a time.
inline int stripRows(int width) {
    constexpr int kPixels = 1 << 20;
    constexpr int kLeastRows = 64;
    return std::max(kLeastRows, kPixels / std::max(1, width));
}

}  // namespace pictures
