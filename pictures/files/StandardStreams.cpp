// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/StandardStreams.h"

#include <array>
#include <fstream>
#include <random>
#include <system_error>

#include "pictures/Errors.h"
#include "pictures/Interrupt.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace fs = std::filesystem;

namespace pictures {
namespace {

constexpr std::size_t kChunk = 1 << 16;

// Windows would change line ends.
void useBinaryStreams() {
#ifdef _WIN32
    _setmode(0, _O_BINARY);
    _setmode(1, _O_BINARY);
#endif
}

// Returns the bytes copied.
std::size_t copy(std::istream& from, std::ostream& to) {
    std::array<char, kChunk> chunk{};
    std::size_t total = 0;
    while (from && to) {
        throwIfInterrupted();
        from.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        to.write(chunk.data(), from.gcount());
        total += static_cast<std::size_t>(from.gcount());
    }
    to.flush();
    return total;
}

}  // namespace

TemporaryFile::TemporaryFile(const std::string& suffix) {
    std::random_device random;
    std::error_code error;
    const fs::path path = fs::temp_directory_path(error) /
                          ("orbel-" + std::to_string(random()) + std::to_string(random()) + suffix);
    if (!std::ofstream(path, std::ios::binary)) {
        throw Failure("cannot write " + path.string() + "; check the folder for temporary files");
    }
    file_ = std::make_unique<UnfinishedFile>(path);
}

void spool(std::istream& in, const fs::path& file) {
    useBinaryStreams();
    std::ofstream out(file, std::ios::binary);
    const std::size_t bytes = copy(in, out);
    if (!out) throw Failure("cannot write " + file.string() + "; free some space");
    if (bytes == 0) throw Failure("standard input is empty; pipe an image into the command");
}

void unspool(const fs::path& file, std::ostream& out) {
    useBinaryStreams();
    std::ifstream in(file, std::ios::binary);
    copy(in, out);
    if (!out) throw Failure("cannot write to standard output");
}

}  // namespace pictures
