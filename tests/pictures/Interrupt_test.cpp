// SPDX-License-Identifier: Apache-2.0
#include "pictures/Interrupt.h"

#include <chrono>
#include <csignal>
#include <thread>

#include "pictures/Errors.h"
#include "pictures/files/AtomicFile.h"
#include "pictures/files/LibraryOutput.h"
#include "pictures/files/StandardStreams.h"
#include "support/TestFiles.h"

namespace pictures {
namespace {

class Interrupt : public test::FolderTest {};

// As in a library that decodes a large file.
[[noreturn]] void interruptedInACallThatNeverReturns(const std::string& file,
                                                     const std::string& trace) {
    const InterruptGuard guard("last words");
    AtomicFile output(file);
    const TemporaryFile spooled(".tmp");
    test::writeText(trace, spooled.path().string());
    const LibraryOutputGuard quiet;
    std::raise(SIGINT);
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

TEST_F(Interrupt, EndsTheProcessWithoutUnfinishedFiles) {
    test::writeText(path("out.png"), "earlier");
    EXPECT_EXIT(interruptedInACallThatNeverReturns(path("out.png"), path("trace")),
                testing::ExitedWithCode(kExitInterrupted), "last words");
    EXPECT_FALSE(std::filesystem::exists(test::readText(path("trace"))));
    EXPECT_EQ(names(), (std::vector<std::string>{"out.png", "trace"}));
    EXPECT_EQ(test::readText(path("out.png")), "earlier");
}

}  // namespace
}  // namespace pictures
