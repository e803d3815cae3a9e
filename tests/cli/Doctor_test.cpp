// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "cli/doctor/ProbeFrame.h"
#include "headless/Effect.h"
#include "support/RunTool.h"
#include "support/TestFiles.h"

namespace test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Doctor : public FolderTest {};

TEST_F(Doctor, FindsAHealthyInstallationHealthy) {
    const ToolRun run = runTool({"doctor"});
    EXPECT_EQ(run.exitCode, 0) << run.out;
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out,
                AllOf(HasSubstr("ok   bundle: "), HasSubstr("ok   the effect loads: Orbel"),
                      HasSubstr("OpenImageIO 2."), HasSubstr("ok   small frames"),
                      HasSubstr("report"), Not(HasSubstr("bad"))));
}

TEST_F(Doctor, NamesWhatIsWrongWithABundle) {
    writeText(path("text.so"), "no bundle");
    const std::string whole = readText(ORBEL_BUNDLE);
    writeText(path("cut.so"), whole.substr(0, whole.size() / 2));
    using Case = std::pair<const char*, const char*>;
    for (const auto& [file, words] :
         {Case{"none.so", "cannot find the bundle"}, Case{"text.so", "is not a loadable file"},
          Case{"cut.so", "cut.so"}}) {
        const ToolRun run = runTool({"doctor", "--bundle", path(file)});
        EXPECT_EQ(run.exitCode, 1) << file;
        EXPECT_THAT(run.out, AllOf(HasSubstr("bad  "), HasSubstr(words), HasSubstr("report"),
                                   HasSubstr("ok   processor")))
            << file;
    }
}

TEST_F(Doctor, FindsFramesThatAreWrong) {
    headless::Host host;
    headless::Effect effect(host, ORBEL_BUNDLE);
    effect.setUp();
    EXPECT_EQ(cli::probeFrames(effect), "");
    // Stand for an effect that computes another spot, other depths, or nothing at all.
    effect.parameters().set("Concentration", 0.5);
    EXPECT_THAT(cli::probeFrames(effect), HasSubstr("the middle of a spot"));
    effect.parameters().set("Concentration", 0.0);
    effect.parameters().set("Profile", 0.1);
    EXPECT_THAT(cli::probeFrames(effect), HasSubstr("the pixel "));
    host.setMemoryLimit(1000);
    EXPECT_THAT(cli::probeFrames(effect), HasSubstr("fails with code"));
}

}  // namespace
}  // namespace test
