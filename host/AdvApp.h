// SPDX-License-Identifier: Apache-2.0
#pragma once
// Messages in the host's info panel.

#include "platform/Suites.h"

// Each call acquires the panel's suite for itself, forwards its arguments and returns the host's
// result. The host has to offer the suite.
namespace AEO::AdvApp {

// Shows a colour.
PF_Err InfoDrawColor(SPBasicSuite& basic, PF_Pixel color);
// Shows two lines.
PF_Err InfoDrawText(SPBasicSuite& basic, const char* line1, const char* line2);
// Shows three lines.
PF_Err InfoDrawText3(SPBasicSuite& basic, const char* line1, const char* line2, const char* line3);
// Shows three lines, the second and third in a left and a right half.
PF_Err InfoDrawText3Plus(SPBasicSuite& basic, const char* line1, const char* line2Left,
                         const char* line2Right, const char* line3Left, const char* line3Right);

}  // namespace AEO::AdvApp
