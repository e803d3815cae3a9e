#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace pictures {

// Throws Failure if `path` plainly can't be written: its folder is missing or closed to us, or it
// is something other than a file, or write-protected. For asking before a long render.
void requireWritable(const std::filesystem::path& path);

// A file that appears under its name whole or not at all: written beside, then renamed. An earlier
// file of that name stays untouched until then.
class AtomicFile {
public:
    // Creates the file beside `path` (through a symbolic link, beside what it points to).
    // Throws Failure.
    explicit AtomicFile(const std::filesystem::path& path);
    // Removes the file beside unless it was committed.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Writes everything and makes sure that the disk took it. Throws Failure, for example when the
    // disk is full.
    void write(std::span<const unsigned char> bytes);
    // For an encoder that wants a name: lets go of the file beside and tells where it lies. The
    // caller makes sure that it is whole.
    std::filesystem::path handOver();
    // Gives the file its name. Throws Failure.
    void commit();

private:
    void closeBeside();

    std::filesystem::path m_target;
    std::filesystem::path m_beside;
    std::FILE* m_file = nullptr;
};

}  // namespace pictures
