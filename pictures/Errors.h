// SPDX-License-Identifier: Apache-2.0
#pragma once
// The exceptions that end the tool, and the exit code of each.

#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>

namespace pictures {

// The command line is wrong: exit code 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A file, the bundle or the system doesn't allow it: exit code 1. The text names the file and the
// remedy.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// There is no such file.
struct MissingFile : Failure {
    MissingFile(const std::string& text, std::filesystem::path named)
        : Failure(text), file(std::move(named)) {}

    std::filesystem::path file;
};

// The user pressed Control-C.
struct Interrupted {};
inline constexpr int kExitInterrupted = 130;  // 128 + SIGINT, as shells report it

}  // namespace pictures
