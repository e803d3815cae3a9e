// SPDX-License-Identifier: Apache-2.0
#include "pipeline/MemoryShortage.h"

#include "host/AdvApp.h"

int reportMemoryShortage(SPBasicSuite& basic) {
    AEO::AdvApp::InfoDrawColor(basic, PF_Pixel{.alpha = 255, .red = 0, .green = 0, .blue = 255});
    AEO::AdvApp::InfoDrawText3(basic, "TARNWICK Orbel", "Insufficient memory",
                               "Decrease Orbel radius or Depth Layer Resolution.");
    return PF_Err_OUT_OF_MEMORY;
}
