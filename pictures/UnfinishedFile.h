// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <system_error>

namespace pictures {

// A file that must not be left behind half written: removed by the destructor, or by
// removeUnfinishedFiles() if the process ends without destructors.
class UnfinishedFile {
public:
    // The file exists already.
    explicit UnfinishedFile(std::filesystem::path path);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::filesystem::path& path() const { return path_; }
    // Gives the file its final name, under which it stays. Returns whether that worked.
    bool finish(const std::filesystem::path& name, std::error_code& error);

private:
    std::filesystem::path path_;
};

// Removes all unfinished files of the process. None can be finished or created from then on: its
// thread would wait for ever, so the caller must end the process. Any thread may call it.
void removeUnfinishedFiles();

}  // namespace pictures
