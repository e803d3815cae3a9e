// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "pictures/UnfinishedFile.h"

namespace pictures {

// Throws Failure if `path` obviously can't be written: its folder is missing or not writable, or it
// is write-protected or no regular file. For a check before a long render.
void requireWritable(const std::filesystem::path& path);

// A file that appears under its name complete or not at all: written next to it under a temporary
// name, then renamed. Until then an earlier file of that name stays untouched.
class AtomicFile {
public:
    // Creates the temporary file next to `path`, or next to the target if that is a symbolic link.
    // Throws Failure.
    explicit AtomicFile(const std::filesystem::path& path);
    // Removes the temporary file unless it was committed.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // For an encoder that writes to a stream. Not owned.
    std::FILE* stream() { return file_; }
    // Flushes what was written to the stream to the disk. Throws Failure if any write failed, for
    // example because the disk is full.
    void flush();
    // For an encoder that needs a file name: closes the temporary file and returns its path. The
    // caller makes sure that it is complete.
    std::filesystem::path handOver();
    // Renames the temporary file to its final name. Throws Failure.
    void commit();

private:
    void closeBeside();

    std::filesystem::path target_;
    std::unique_ptr<UnfinishedFile> beside_;
    std::FILE* file_ = nullptr;
};

}  // namespace pictures
