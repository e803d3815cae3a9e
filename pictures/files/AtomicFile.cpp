// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <system_error>
#include <utility>

#include "pictures/Errors.h"

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace pictures {
namespace {

constexpr int kNameAttempts = 16;

[[noreturn]] void fail(const fs::path& path, int error) {
    const std::string remedy = error == ENOSPC || error == EDQUOT
                                   ? "; free some space or write elsewhere"
                                   : "; choose another place with -o";
    throw Failure("cannot write " + path.string() + ": " + std::strerror(error) + remedy);
}

bool mayWrite(const fs::path& path) {
#ifdef _WIN32
    return _waccess(path.c_str(), 2) == 0;
#else
    return access(path.c_str(), W_OK) == 0;
#endif
}

// Flushes the written bytes to the disk; only then do some file systems notice that they are full.
bool syncToDisk(std::FILE* file) {
#ifdef _WIN32
    return _commit(_fileno(file)) == 0;
#else
    return fsync(fileno(file)) == 0 || errno == EINVAL;  // EINVAL: nothing to sync there
#endif
}

fs::path folderOf(const fs::path& path) {
    const fs::path folder = path.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

// The target of a symbolic link, so that writing replaces the file and keeps the link.
fs::path resolved(const fs::path& path) {
    std::error_code ignored;
    return fs::is_symlink(path, ignored) ? fs::weakly_canonical(path) : path;
}

fs::path nameBeside(const fs::path& target) {
    std::random_device random;
    std::string name = ".";
    name.append(target.filename().string()).append(".orbel-").append(std::to_string(random()));
    return folderOf(target) / name;
}

}  // namespace

void requireWritable(const fs::path& path) {
    const fs::path target = resolved(path);
    const fs::path folder = folderOf(target);
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        throw Failure("cannot write " + path.string() + ": there is no folder " + folder.string() +
                      "; create it first");
    }
    if (fs::exists(target, ignored) && !fs::is_regular_file(target, ignored)) {
        throw Failure("cannot write " + path.string() + ": it is not a file; name a file with -o");
    }
    if (!mayWrite(folder) || (fs::exists(target, ignored) && !mayWrite(target))) fail(path, EACCES);
}

AtomicFile::AtomicFile(const fs::path& path) : target_(resolved(path)) {
    requireWritable(path);
    for (int attempt = 0; file_ == nullptr && attempt < kNameAttempts; ++attempt) {
        const fs::path beside = nameBeside(target_);
        file_ = std::fopen(beside.string().c_str(), "wbx");
        if (file_ == nullptr && errno != EEXIST) break;
        if (file_ != nullptr) beside_ = std::make_unique<UnfinishedFile>(beside);
    }
    if (file_ == nullptr) fail(path, errno);
}

AtomicFile::~AtomicFile() {
    if (file_ != nullptr) std::fclose(file_);
}

void AtomicFile::flush() {
    const bool failed = std::ferror(file_) != 0;
    if (std::fflush(file_) != 0 || !syncToDisk(file_)) fail(target_, errno);
    if (failed) fail(target_, errno != 0 ? errno : EIO);
}

fs::path AtomicFile::handOver() {
    closeBeside();
    return beside_->path();
}

void AtomicFile::closeBeside() {
    std::FILE* file = std::exchange(file_, nullptr);
    if (file != nullptr && std::fclose(file) != 0) fail(target_, errno);
}

void AtomicFile::commit() {
    closeBeside();

    std::error_code error;
    const fs::file_status earlier = fs::status(target_, error);
    if (fs::exists(earlier)) fs::permissions(beside_->path(), earlier.permissions(), error);
    if (!beside_->finish(target_, error)) fail(target_, error.value());
}

}  // namespace pictures
