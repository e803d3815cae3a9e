// SPDX-License-Identifier: Apache-2.0
#include "headless/loader/Bundle.h"

#include <gtest/gtest.h>

#include <fstream>

#include "headless/loader/BundleFile.h"
#include "support/TestFolder.h"

namespace headless {
namespace {

namespace fs = std::filesystem;

std::string messageFor(const fs::path& file) {
    try {
        const Bundle bundle(file);
    } catch (const BundleError& e) {
        return e.what();
    }
    return "loaded";
}

std::string contentsOf(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

fs::path write(const fs::path& file, const std::string& contents) {
    std::ofstream(file, std::ios::binary) << contents;
    return file;
}

// The library with another processor number in its header.
std::string elfFor(std::string library, char machine) {
    library.at(18) = machine;
    library.at(19) = 0;
    return library;
}

// The start of a Windows file, with its headers at 0x80.
std::string windowsHead(char low, char high) {
    std::string head = "MZ";
    head.resize(0x3C);
    head += '\x80';
    head.resize(0x80);
    head += "PE";
    head.resize(0x84);
    head += low;
    head += high;
    return head;
}

TEST(Bundle, MessageNamesFileAndReason) {
    const TestFolder own;
    const fs::path& folder = own.path;
    const std::string library = contentsOf(ORBEL_NO_ENTRY_MODULE);
    const std::string builtFor = " was built for ";
    const std::string here = ", and this is " + thisProgram().describe();
    const std::string text = "no library, however long the text of the file is";

    const std::pair<fs::path, std::string> cases[] = {
        {folder / "missing.so", " does not exist"},
        {folder, " is not a file"},
        {write(folder / "empty.so", ""), " is not a loadable file"},
        {write(folder / "text.so", text), " is not a loadable file"},
        {write(folder / "dos.so", "MZ" + text), " is not a loadable file"},
        {write(folder / "arm.so", elfFor(library, 40)), builtFor + "Linux on arm (32 bits)" + here},
        {write(folder / "s390.so", elfFor(library, 22)),
         builtFor + "Linux on processor type 22" + here},
        {write(folder / "x86-64.dll", windowsHead('\x64', '\x86')),
         builtFor + "Windows on x86-64" + here},
        {write(folder / "arm64.dll", windowsHead('\x64', '\xAA')),
         builtFor + "Windows on arm64" + here},
        {write(folder / "mac.so", std::string("\xCF\xFA\xED\xFE\x0C\0\0\1", 8)),
         builtFor + "macOS on arm64" + here},
        {write(folder / "universal.so", "\xCA\xFE\xBA\xBE"), builtFor + "macOS" + here},
        {ORBEL_NO_ENTRY_MODULE, " has no function EntryPointFunc, so it is not an effect"}};
    for (const auto& [file, reason] : cases) EXPECT_EQ(messageFor(file), file.string() + reason);
}

// The system's loader would map pages beyond the end of the file, and the process would crash.
TEST(Bundle, ACutOffFileIsRefusedBeforeTheLoaderSeesIt) {
    const TestFolder own;
    const fs::path file = own.path / "cut.so";
    const std::string library = contentsOf(ORBEL_NO_ENTRY_MODULE);
    for (const std::size_t length : {std::size_t{20}, std::size_t{64}, library.size() / 4}) {
        write(file, library.substr(0, length));
        EXPECT_EQ(messageFor(file), file.string() + " is truncated") << length;
    }
}

}  // namespace
}  // namespace headless
