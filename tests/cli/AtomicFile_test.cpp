#include "cli/AtomicFile.h"

#include <sys/resource.h>

#include <csignal>

#include "cli/Errors.h"
#include "cli/PictureWriter.h"
#include "cli/TestFiles.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

using AtomicFileTest = test::FolderTest;

std::vector<unsigned char> bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

// The message of the Failure that `action` ends with, or nothing.
template <class Action>
std::string failureOf(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        return failure.what();
    }
    return {};
}

TEST_F(AtomicFileTest, AppearsWhole) {
    const std::string target = path("out.bin");
    test::writeText(target, "earlier");
    AtomicFile file(target);
    file.write(bytes("new content"));
    EXPECT_EQ(test::readText(target), "earlier");
    file.commit();
    EXPECT_EQ(test::readText(target), "new content");
    EXPECT_EQ(names(), std::vector<std::string>{"out.bin"});
}

TEST_F(AtomicFileTest, LeavesNothingWithoutCommit) {
    const std::string target = path("out.bin");
    test::writeText(target, "earlier");
    { AtomicFile(target).write(bytes("half")); }
    EXPECT_EQ(test::readText(target), "earlier");
    EXPECT_EQ(names(), std::vector<std::string>{"out.bin"});
}

TEST_F(AtomicFileTest, KeepsPermissionsAndLinks) {
    const std::string target = path("real.bin");
    test::writeText(target, "earlier");
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("real.bin", path("link.bin"));
    AtomicFile file(path("link.bin"));
    file.write(bytes("new"));
    file.commit();
    EXPECT_TRUE(fs::is_symlink(path("link.bin")));
    EXPECT_EQ(test::readText(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(AtomicFileTest, SaysWhyAPlaceIsImpossible) {
    EXPECT_NE(failureOf([&] { requireWritable(path("no/such/out.png")); }).find("no folder"),
              std::string::npos);
    fs::create_directory(path("out.png"));
    EXPECT_NE(failureOf([&] { requireWritable(path("out.png")); }).find("not a file"),
              std::string::npos);
}

// A limit on the size of files stands in for the full disk: the system refuses the same call.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit now{limit, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &now);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

TEST_F(AtomicFileTest, ReportsAFullDisk) {
    const auto made = test::imageSpec(64, 64, {"R", "G", "B"}, OIIO::TypeDesc::UINT8);
    const std::vector<float> values(64 * 64 * 3, 0.5F);
    // The space ends in the header, in the pixels, and just before the end of the file.
    for (const char* name : {"out.png", "out.exr", "out.tif", "out.ppm"}) {
        writeChannels(path(name), made, values);
        const auto whole = static_cast<rlim_t>(test::readText(path(name)).size());
        test::writeText(path(name), "earlier");
        for (const rlim_t space : {rlim_t{4}, whole / 2, whole - 1}) {
            std::string message;
            {
                const FileSizeLimit limit(space);
                message = failureOf([&] { writeChannels(path(name), made, values); });
            }
            EXPECT_NE(message.find("cannot write " + path(name)), std::string::npos)
                << name << " with " << space << " bytes: " << message;
            EXPECT_EQ(test::readText(path(name)), "earlier");
        }
    }
    EXPECT_EQ(names().size(), 4U);
}

}  // namespace
}  // namespace cli
