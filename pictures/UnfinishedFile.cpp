// SPDX-License-Identifier: Apache-2.0
#include "pictures/UnfinishedFile.h"

#include <mutex>
#include <set>
#include <system_error>
#include <utility>

namespace pictures {
namespace {

struct Registry {
    std::mutex mutex;
    std::set<std::filesystem::path> paths;
};

// Never destroyed, since a file may be removed while the process ends.
Registry& registry() {
    static auto* const kRegistry = new Registry;
    return *kRegistry;
}

}  // namespace

UnfinishedFile::UnfinishedFile(std::filesystem::path path) : path_(std::move(path)) {
    const std::lock_guard lock(registry().mutex);
    registry().paths.insert(path_);
}

UnfinishedFile::~UnfinishedFile() {
    const std::lock_guard lock(registry().mutex);
    std::error_code ignored;
    if (registry().paths.erase(path_) > 0) std::filesystem::remove(path_, ignored);
}

bool UnfinishedFile::finish(const std::filesystem::path& name, std::error_code& error) {
    const std::lock_guard lock(registry().mutex);
    std::filesystem::rename(path_, name, error);
    if (!error) registry().paths.erase(path_);
    return !error;
}

void removeUnfinishedFiles() {
    registry().mutex.lock();
    for (const auto& path : registry().paths) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
}

}  // namespace pictures
