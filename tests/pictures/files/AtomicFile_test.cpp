// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/AtomicFile.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "pictures/Errors.h"
#include "pictures/files/PictureWriter.h"
#include "support/TestFiles.h"

namespace fs = std::filesystem;

namespace pictures {
namespace {

using AtomicFileTest = test::FolderTest;

TEST_F(AtomicFileTest, AppearsWholeAndKeepsPermissionsAndLinks) {
    const std::string target = path("real.bin");
    const std::string text = "new";
    test::writeText(target, "earlier");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.bin", path("link.bin"));
    for (const bool commit : {false, true}) {
        AtomicFile file(path("link.bin"));
        ASSERT_GE(std::fputs(text.c_str(), file.stream()), 0);
        file.flush();
        EXPECT_EQ(test::readText(target), "earlier");
        if (commit) file.commit();
    }
    EXPECT_TRUE(fs::is_symlink(path("link.bin")));
    EXPECT_EQ(test::readText(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(names().size(), 2U);
}

// A limit on the file size replaces the full disk: the system fails the same call.
TEST_F(AtomicFileTest, ReportsAFullDisk) {
    const auto made = test::imageSpec(64, 64, {"R", "G", "B"}, OIIO::TypeDesc::UINT8);
    const std::vector<float> values(64 * 64 * 3, 0.5F);
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const char* name : {"out.png", "out.exr", "out.tif", "out.ppm"}) {
        writeChannels(path(name), made, values);
        const auto whole = static_cast<rlim_t>(test::readText(path(name)).size());
        test::writeText(path(name), "earlier");
        // The space ends in the header, in the pixels, and just before the end of the file.
        for (const rlim_t space : {rlim_t{4}, whole / 2, whole - 1}) {
            const rlimit limit{space, before.rlim_max};
            setrlimit(RLIMIT_FSIZE, &limit);
            const auto message = test::refusalOf([&] { writeChannels(path(name), made, values); });
            setrlimit(RLIMIT_FSIZE, &before);
            EXPECT_THAT(message, testing::HasSubstr("cannot write " + path(name))) << space;
            EXPECT_EQ(test::readText(path(name)), "earlier");
        }
    }
    EXPECT_EQ(names().size(), 4U);
}

}  // namespace
}  // namespace pictures
