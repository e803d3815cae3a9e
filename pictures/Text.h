#pragma once
// Wording that messages share.

#include <cstddef>
#include <string>
#include <string_view>

namespace pictures {

// `text` with line ends and runs of blanks as single blanks, so that a message is one line.
std::string oneLine(std::string_view text);

// `count` and the noun in the fitting number: "1 pixel", "2 pixels".
std::string counted(std::size_t count, std::string_view noun);

// Such as "0.1": the shortest form with at most six significant digits.
std::string numberText(double value);

}  // namespace pictures
