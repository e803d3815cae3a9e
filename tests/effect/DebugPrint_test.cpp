// SPDX-License-Identifier: Apache-2.0
#include "effect/DebugPrint.h"

#include <gtest/gtest.h>

#include <string>

TEST(DebugPrint, CutsLongTextsAndRefusesLongFormats) {
    testing::internal::CaptureStdout();
    _printf("%s", std::string(5000, 'x').c_str());
    _printf(std::string(1024, 'y').c_str(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              std::string(1023, 'x') + "_printf error ;Message too large\n");
}
