// SPDX-License-Identifier: Apache-2.0
#pragma once
// Compares the frames of two builds.

#include <filesystem>
#include <ostream>

namespace trial {

// Compares the frames of two folders in pairs. 8 and 16 bits may differ by one step, since results
// are truncated; float by 1e-7 plus 1e-6 of the value. In a transparent pixel the colour is only a
// quotient of two rounding errors, so only alpha is compared.
//
// For each number of bits, prints the share of differing values and the worst difference, and one
// line for each frame that doesn't pass or has no counterpart. False if there is such a frame, or
// no frame at all.
bool compareFolders(const std::filesystem::path& a, const std::filesystem::path& b,
                    std::ostream& out);

}  // namespace trial
