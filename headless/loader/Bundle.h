// SPDX-License-Identifier: Apache-2.0
#pragma once
// Loads the file that holds the effect.

#include <filesystem>
#include <stdexcept>

#include "platform/Commands.h"

namespace headless {

// The message names the file and what is wrong with it.
class BundleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A loaded bundle; the destructor unloads it.
class Bundle {
public:
    // Throws BundleError if the file doesn't exist, can't be loaded here (not a loadable file,
    // built for another system or processor, on Linux a processor without AVX2) or has no entry
    // point.
    explicit Bundle(const std::filesystem::path& file);
    ~Bundle();
    Bundle(const Bundle&) = delete;
    Bundle& operator=(const Bundle&) = delete;

    PF_EntryPoint entryPoint() const { return entry_; }

private:
    void* library_ = nullptr;
    PF_EntryPoint entry_ = nullptr;
};

}  // namespace headless
