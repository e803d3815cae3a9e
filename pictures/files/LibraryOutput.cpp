// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/LibraryOutput.h"

#include <atomic>
#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace pictures {
namespace {

constexpr int kStandardError = 2;

// The stream that a guard has redirected; -1 if there is none.
std::atomic<int> redirected{-1};

std::mutex& guardMutex() {
    static std::mutex mutex;
    return mutex;
}

#ifdef _WIN32
int duplicate(int descriptor) {
    return _dup(descriptor);
}
void replace(int descriptor, int by) {
    _dup2(by, descriptor);
}
int openSink() {
    return _open("NUL", _O_WRONLY);
}
void closeDescriptor(int descriptor) {
    _close(descriptor);
}
#else
int duplicate(int descriptor) {
    return fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}
void replace(int descriptor, int by) {
    dup2(by, descriptor);
}
int openSink() {
    return open("/dev/null", O_WRONLY | O_CLOEXEC);
}
void closeDescriptor(int descriptor) {
    close(descriptor);
}
#endif

}  // namespace

LibraryOutputGuard::LibraryOutputGuard() : only_(guardMutex()), saved_(duplicate(kStandardError)) {
    if (saved_ < 0) return;
    std::fflush(stderr);
    const int sink = openSink();
    if (sink < 0) return;
    replace(kStandardError, sink);
    redirected = saved_;
    closeDescriptor(sink);
}

LibraryOutputGuard::~LibraryOutputGuard() {
    if (saved_ < 0) return;
    std::fflush(stderr);
    redirected = -1;
    replace(kStandardError, saved_);
    closeDescriptor(saved_);
}

void restoreErrorStream() {
    const int stream = redirected;
    if (stream >= 0) replace(kStandardError, stream);
}

}  // namespace pictures
