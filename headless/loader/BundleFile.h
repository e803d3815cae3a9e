// SPDX-License-Identifier: Apache-2.0
#pragma once
// Finds out from its header which system a loadable file was built for: loaders report little about
// that.

#include <filesystem>
#include <optional>
#include <string>

namespace headless {

struct BundleTarget {
    std::string system;     // "Linux", "Windows" or "macOS"
    std::string processor;  // "x86-64", "arm64", ...; empty for a file for several

    // Such as "Windows on x86-64".
    std::string describe() const;
    // Whether this program can load such a file.
    bool fitsThisProgram() const;
};

// What this program was built for.
BundleTarget thisProgram();
// None for a file that no loader of these systems accepts.
std::optional<BundleTarget> bundleTarget(const std::filesystem::path& file);
// Whether a 64-bit Linux file is shorter than the segments that its header tells the loader to map.
// The loader doesn't check this, and the process would crash.
bool endsEarly(const std::filesystem::path& file);

}  // namespace headless
