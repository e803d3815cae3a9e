#include "headless/Bundle.h"

#include <gtest/gtest.h>

#include <fstream>

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

TEST(Bundle, MessageNamesFileAndReason) {
    const fs::path folder = testing::TempDir() + "/bundle_test";
    fs::remove_all(folder);
    fs::create_directories(folder);
    std::ifstream module(ORBEL_NO_ENTRY_MODULE, std::ios::binary);
    std::string foreign{std::istreambuf_iterator<char>(module), {}};
    ASSERT_GT(foreign.size(), 64u);
    foreign[18] = 0x16;  // e_machine: a processor that this is not
    foreign[19] = 0;
    std::ofstream(folder / "foreign.so", std::ios::binary) << foreign;
    std::ofstream(folder / "empty.so");
    std::ofstream(folder / "text.so") << "no library, however long the text of the file is, "
                                         "since it lacks the header that the loader looks for";

    const std::pair<fs::path, const char*> cases[] = {
        {folder / "missing.so", " is not there"},
        {folder, " is not a file"},
        {folder / "empty.so", " is not a loadable file for this system"},
        {folder / "text.so", " is not a loadable file for this system"},
        {folder / "foreign.so", " was built for another processor"},
        {ORBEL_NO_ENTRY_MODULE, " has no function EntryPointFunc, so it is no effect"}};
    for (const auto& [file, reason] : cases) EXPECT_EQ(messageFor(file), file.string() + reason);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace headless
