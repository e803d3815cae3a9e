// SPDX-License-Identifier: Apache-2.0
#pragma once
// Parses numbers of the command line. Each function throws UsageError, naming `option` and the
// expected form, for any other text.

#include <cstdint>
#include <string>

#include "pictures/Picture.h"
#include "platform/Scalars.h"

namespace cli {

// A finite decimal number and nothing else.
double parseNumber(const std::string& option, const std::string& text);
// The same, with "inf" for infinity.
double parseDistance(const std::string& option, const std::string& text);
// A whole number from `least` to `most`.
int parseWhole(const std::string& option, const std::string& text, int least, int most);
// "N/D" or "N", both at least 1.
PF_RationalScale parseRatio(const std::string& option, const std::string& text);
// A point in pixels, or in percent of the image.
struct Point {
    double x = 0;
    double y = 0;
    bool percent = false;
};
inline constexpr const char* kPointForm = "X,Y in pixels or X%,Y%";
// "X,Y" or "X%,Y%".
Point parsePoint(const std::string& option, const std::string& text);
// "X,Y,W,H" with W and H at least 1.
pictures::Window parseRegion(const std::string& option, const std::string& text);
// "WxH", each from 1 to `most`.
pictures::Window parseSize(const std::string& option, const std::string& text, int most);
// A number of bytes; the suffixes k, M and G stand for powers of 1024.
std::uint64_t parseBytes(const std::string& option, const std::string& text);

}  // namespace cli
