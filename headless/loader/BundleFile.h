#pragma once
// For which system a loadable file was made, by its own header: loaders say little about that.

#include <filesystem>
#include <optional>
#include <string>

namespace headless {

struct BundleTarget {
    std::string system;     // "Linux", "Windows" or "macOS"
    std::string processor;  // "x86-64", "arm64", ...; empty in a file for several

    // Such as "Windows on x86-64".
    std::string describe() const;
    // Whether this program could load such a file.
    bool fitsThisProgram() const;
};

// What this program was built for.
BundleTarget thisProgram();
// None for a file that no loader of these systems would take.
std::optional<BundleTarget> bundleTarget(const std::filesystem::path& file);
// Whether a 64-bit Linux file is shorter than what its header has the loader map. The loader of
// that system doesn't look, and the process dies of it.
bool endsEarly(const std::filesystem::path& file);

}  // namespace headless
