// SPDX-License-Identifier: Apache-2.0
#include "headless/loader/BundleFile.h"

#include <array>
#include <cstdint>
#include <fstream>
#include <string_view>
#include <system_error>

namespace headless {

namespace {

// The first bytes of a file: enough for the headers of all three systems, wherever common linkers
// put the Windows one.
class FileHead {
public:
    explicit FileHead(const std::filesystem::path& file) {
        std::ifstream in(file, std::ios::binary);
        in.read(bytes_.data(), static_cast<std::streamsize>(bytes_.size()));
        size_ = static_cast<std::size_t>(in.gcount());
    }

    bool has(std::uint64_t offset, std::string_view text) const {
        const std::string_view all(bytes_.data(), size_);
        return offset <= size_ && all.substr(offset).starts_with(text);
    }

    // A little-endian number; bytes beyond the end count as 0.
    std::uint64_t number(std::uint64_t offset, std::uint64_t width) const {
        std::uint64_t value = 0;
        for (std::uint64_t i = width; i-- > 0;) {
            const std::uint64_t place = offset + i;
            value = value << 8 | static_cast<unsigned char>(place < size_ ? bytes_[place] : 0);
        }
        return value;
    }

private:
    std::array<char, 4096> bytes_{};
    std::size_t size_ = 0;
};

struct ProcessorName {
    std::uint64_t number;
    const char* name;
};

template <std::size_t Count>
std::string nameIn(const ProcessorName (&names)[Count], std::uint64_t number) {
    for (const ProcessorName& entry : names) {
        if (entry.number == number) return entry.name;
    }
    return "processor type " + std::to_string(number);
}

constexpr ProcessorName kElfMachines[] = {
    {3, "x86 (32 bits)"}, {40, "arm (32 bits)"}, {62, "x86-64"}, {183, "arm64"}};
constexpr ProcessorName kWindowsMachines[] = {
    {0x14C, "x86 (32 bits)"}, {0x1C4, "arm (32 bits)"}, {0x8664, "x86-64"}, {0xAA64, "arm64"}};
constexpr ProcessorName kMacProcessors[] = {
    {7, "x86 (32 bits)"}, {12, "arm (32 bits)"}, {0x01000007, "x86-64"}, {0x0100000C, "arm64"}};

constexpr const char* kSystem =
#if defined(_WIN32)
    "Windows";
#elif defined(__APPLE__)
    "macOS";
#else
    "Linux";
#endif

constexpr const char* kProcessor =
#if defined(__x86_64__) || defined(_M_X64)
    "x86-64";
#elif defined(__aarch64__) || defined(_M_ARM64)
    "arm64";
#else
#error Name this processor
#endif

}  // namespace

std::string BundleTarget::describe() const {
    return processor.empty() ? system : system + " on " + processor;
}

bool BundleTarget::fitsThisProgram() const {
    return system == kSystem && (processor.empty() || processor == kProcessor);
}

BundleTarget thisProgram() {
    return {kSystem, kProcessor};
}

std::optional<BundleTarget> bundleTarget(const std::filesystem::path& file) {
    const FileHead head(file);
    if (head.has(0, "\177ELF"))
        return BundleTarget{"Linux", nameIn(kElfMachines, head.number(18, 2))};
    if (head.has(0, "MZ")) {
        const std::uint64_t header = head.number(0x3C, 4);
        if (!head.has(header, std::string_view("PE\0\0", 4))) return std::nullopt;
        return BundleTarget{"Windows", nameIn(kWindowsMachines, head.number(header + 4, 2))};
    }
    if (head.has(0, "\xCF\xFA\xED\xFE") || head.has(0, "\xCE\xFA\xED\xFE")) {
        return BundleTarget{"macOS", nameIn(kMacProcessors, head.number(4, 4))};
    }
    // A universal file.
    if (head.has(0, "\xCA\xFE\xBA\xBE")) return BundleTarget{"macOS", ""};
    return std::nullopt;
}

bool endsEarly(const std::filesystem::path& file) {
    const FileHead head(file);
    if (!head.has(0, "\177ELF\2")) return false;
    std::error_code error;
    const std::uint64_t size = std::filesystem::file_size(file, error);
    if (error) return true;
    const std::uint64_t table = head.number(32, 8);
    const std::uint64_t entrySize = head.number(54, 2);
    const std::uint64_t entries = head.number(56, 2);
    if (entries == 0 || table > size || entries * entrySize > size - table) return true;
    for (std::uint64_t i = 0; i < entries; ++i) {
        const std::uint64_t segment = table + i * entrySize;
        const std::uint64_t begin = head.number(segment + 8, 8);
        const std::uint64_t length = head.number(segment + 32, 8);
        if (begin > size || length > size - begin) return true;
    }
    return false;
}

}  // namespace headless
