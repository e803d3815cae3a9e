// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <mutex>

namespace pictures {

// Discards what image libraries print to standard error by themselves during its lifetime: their
// messages are read from their error texts. The tool's own lines must not be printed meanwhile.
// Blocks while another one exists in the process.
class LibraryOutputGuard {
public:
    LibraryOutputGuard();
    ~LibraryOutputGuard();
    LibraryOutputGuard(const LibraryOutputGuard&) = delete;
    LibraryOutputGuard& operator=(const LibraryOutputGuard&) = delete;

private:
    std::unique_lock<std::mutex> only_;
    int saved_;  // descriptor of the stream; -1 if it couldn't be redirected
};

// Gives standard error back for the last words of a process that ends while a guard exists. Any
// thread may call it.
void restoreErrorStream();

}  // namespace pictures
