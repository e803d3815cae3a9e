#include "host/AdvApp.h"

#include "host/HostFixture.h"

using AdvApp = HostFixture;

TEST_F(AdvApp, DrawsWhatItIsGiven) {
    SPBasicSuite& basic = *in_data.pica_basicP;
    AEO::AdvApp::InfoDrawText(basic, "a", "b");
    EXPECT_THAT(host.info().lines, testing::ElementsAre("a", "b"));
    AEO::AdvApp::InfoDrawText3Plus(basic, "a", "b", "c", "d", "e");
    EXPECT_THAT(host.info().lines, testing::ElementsAre("a", "b", "c", "d", "e"));
}
