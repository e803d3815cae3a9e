#include "effect/DebugPrint.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string printed(const char* format, const char* argument) {
    testing::internal::CaptureStdout();
    _printf(format, argument);
    return testing::internal::GetCapturedStdout();
}

TEST(DebugPrint, CutsLongTextsAndRefusesLongFormats) {
    EXPECT_EQ(printed("%s!\n", "100 %d"), "100 %d!\n");
    EXPECT_EQ(printed("%s", std::string(5000, 'x').c_str()), std::string(1023, 'x'));
    EXPECT_EQ(printed(std::string(1023, 'y').c_str(), ""), std::string(1023, 'y'));
    EXPECT_EQ(printed(std::string(1024, 'y').c_str(), ""), "_printf error ;Message too large\n");
}

}  // namespace
