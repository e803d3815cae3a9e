// SPDX-License-Identifier: Apache-2.0
#include "host/AdvApp.h"

#include "host/SuiteHolder.h"

namespace AEO::AdvApp {

// The suite's pointer is used without a check: no host of this effect lacks the suite.
// NOLINTBEGIN(clang-analyzer-core.NullDereference)

PF_Err InfoDrawColor(SPBasicSuite& basic, PF_Pixel color) {
    SuiteHolder<PF_AdvAppSuite1> holder(&basic);
    holder.acquire();
    return holder.suite->PF_InfoDrawColor(color);
}

PF_Err InfoDrawText(SPBasicSuite& basic, const char* line1, const char* line2) {
    SuiteHolder<PF_AdvAppSuite1> holder(&basic);
    holder.acquire();
    return holder.suite->PF_InfoDrawText(line1, line2);
}

PF_Err InfoDrawText3(SPBasicSuite& basic, const char* line1, const char* line2, const char* line3) {
    SuiteHolder<PF_AdvAppSuite1> holder(&basic);
    holder.acquire();
    return holder.suite->PF_InfoDrawText3(line1, line2, line3);
}

PF_Err InfoDrawText3Plus(SPBasicSuite& basic, const char* line1, const char* line2Left,
                         const char* line2Right, const char* line3Left, const char* line3Right) {
    SuiteHolder<PF_AdvAppSuite1> holder(&basic);
    holder.acquire();
    return holder.suite->PF_InfoDrawText3Plus(line1, line2Left, line2Right, line3Left, line3Right);
}

// NOLINTEND(clang-analyzer-core.NullDereference)

}  // namespace AEO::AdvApp
