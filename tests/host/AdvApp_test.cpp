#include "host/AdvApp.h"

#include "host/HostFixture.h"

namespace {

using testing::ElementsAre;

class AdvApp : public HostFixture {};

TEST_F(AdvApp, DrawsWhatItIsGiven) {
    SPBasicSuite& basic = *in_data.pica_basicP;
    EXPECT_EQ(AEO::AdvApp::InfoDrawColor(basic, {255, 1, 2, 3}), PF_Err_NONE);
    EXPECT_EQ(host.info().color.blue, 3);
    AEO::AdvApp::InfoDrawText(basic, "a", "b");
    EXPECT_THAT(host.info().lines, ElementsAre("a", "b"));
    AEO::AdvApp::InfoDrawText3(basic, "a", "b", "c");
    EXPECT_THAT(host.info().lines, ElementsAre("a", "b", "c"));
    AEO::AdvApp::InfoDrawText3Plus(basic, "a", "b", "c", "d", "e");
    EXPECT_THAT(host.info().lines, ElementsAre("a", "b", "c", "d", "e"));
}

}  // namespace
