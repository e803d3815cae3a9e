// SPDX-License-Identifier: Apache-2.0
#include "pictures/Text.h"

#include <cctype>
#include <cstdio>

namespace pictures {

std::string oneLine(std::string_view text) {
    std::string line;
    for (const char c : text) {
        const bool blank = std::isspace(static_cast<unsigned char>(c)) != 0;
        if (!blank) {
            line += c;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    return line;
}

std::string firstSentence(std::string_view text) {
    std::string line = oneLine(text.substr(0, text.find('\n')));
    while (line.ends_with('.')) line.pop_back();
    return line;
}

std::string counted(std::size_t count, std::string_view noun) {
    std::string text = std::to_string(count) + " ";
    text += noun;
    if (count != 1) text += 's';
    return text;
}

std::string numberText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

}  // namespace pictures
