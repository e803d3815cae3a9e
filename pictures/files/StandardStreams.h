// SPDX-License-Identifier: Apache-2.0
#pragma once
// Images on standard input and output, by way of temporary files: most readers and writers seek.

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <string>

#include "pictures/UnfinishedFile.h"

namespace pictures {

// What stands for standard input or output on the command line.
inline constexpr const char* kStandardStream = "-";

// A file in the system's folder for temporary files, removed by the destructor.
class TemporaryFile {
public:
    // `suffix` with its dot, or empty. Throws Failure.
    explicit TemporaryFile(const std::string& suffix);

    const std::filesystem::path& path() const { return file_->path(); }

private:
    std::unique_ptr<UnfinishedFile> file_;
};

// Copies everything from `in` into the file. Throws Failure if there is nothing or it can't be
// written, and Interrupted after Control-C.
void spool(std::istream& in, const std::filesystem::path& file);

// Copies the file to `out`. Throws Failure if the reader at the other end is gone.
void unspool(const std::filesystem::path& file, std::ostream& out);

}  // namespace pictures
