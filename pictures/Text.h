// SPDX-License-Identifier: Apache-2.0
#pragma once
// Text helpers for messages.

#include <cstddef>
#include <string>
#include <string_view>

namespace pictures {

// `text` with runs of white space as single spaces, so that a message is one line.
std::string oneLine(std::string_view text);

// The first line of a library's message, without a full stop at its end.
std::string firstSentence(std::string_view text);

// `count` and the noun, in the plural if needed: "1 pixel", "2 pixels".
std::string counted(std::size_t count, std::string_view noun);

// The shortest form with at most six significant digits, such as "0.1".
std::string numberText(double value);

}  // namespace pictures
