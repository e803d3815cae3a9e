// SPDX-License-Identifier: Apache-2.0
#include "cli/Numbers.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "cli/Errors.h"

namespace cli {
namespace {

[[noreturn]] void fail(const std::string& option, const std::string& text,
                       const std::string& wanted) {
    throw UsageError(option + " takes " + wanted + ", not \"" + text + "\"");
}

template <class Number>
std::optional<Number> wholeTextAs(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t at = text.find(separator); at != std::string::npos;
         at = text.find(separator, begin)) {
        pieces.push_back(text.substr(begin, at - begin));
        begin = at + 1;
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

}  // namespace

double parseNumber(const std::string& option, const std::string& text) {
    const auto number = wholeTextAs<double>(text);
    if (!number || !std::isfinite(*number)) fail(option, text, "a number");
    return *number;
}

double parseDistance(const std::string& option, const std::string& text) {
    if (text == "inf") return std::numeric_limits<double>::infinity();
    return parseNumber(option, text);
}

int parseWhole(const std::string& option, const std::string& text, int least, int most) {
    const auto number = wholeTextAs<int>(text);
    if (!number || *number < least || *number > most) {
        fail(option, text,
             "a whole number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return *number;
}

PF_RationalScale parseRatio(const std::string& option, const std::string& text) {
    const std::vector<std::string> pieces = split(text, '/');
    const auto num = wholeTextAs<std::int32_t>(pieces.front());
    const auto den = pieces.size() > 1 ? wholeTextAs<std::int32_t>(pieces[1]) : 1;
    if (pieces.size() > 2 || !num || !den || *num < 1 || *den < 1) {
        fail(option, text, "a ratio N/D of whole numbers");
    }
    return {*num, static_cast<A_u_long>(*den)};
}

Point parsePoint(const std::string& option, const std::string& text) {
    std::vector<std::string> pieces = split(text, ',');
    const bool percent = text.ends_with('%');
    std::vector<double> numbers;
    for (std::string& piece : pieces) {
        if (piece.ends_with('%') != percent) continue;
        if (percent) piece.pop_back();
        const auto number = wholeTextAs<double>(piece);
        if (number && std::isfinite(*number)) numbers.push_back(*number);
    }
    if (pieces.size() != 2 || numbers.size() != 2) fail(option, text, kPointForm);
    return {numbers[0], numbers[1], percent};
}

pictures::Window parseRegion(const std::string& option, const std::string& text) {
    constexpr int kMost = 1 << 20;  // far beyond any image, and two can be added
    std::vector<int> numbers;
    for (const std::string& piece : split(text, ',')) {
        const auto number = wholeTextAs<int>(piece);
        if (number && std::abs(*number) <= kMost) numbers.push_back(*number);
    }
    if (split(text, ',').size() != 4 || numbers.size() != 4 || numbers[2] < 1 || numbers[3] < 1) {
        fail(option, text, "X,Y,W,H in whole pixels, W and H at least 1");
    }
    return {numbers[0], numbers[1], numbers[0] + numbers[2], numbers[1] + numbers[3]};
}

pictures::Window parseSize(const std::string& option, const std::string& text, int most) {
    const std::vector<std::string> pieces = split(text, 'x');
    const auto width = wholeTextAs<int>(pieces.front());
    const auto height = pieces.size() == 2 ? wholeTextAs<int>(pieces[1]) : std::nullopt;
    if (!width || !height || *width < 1 || *height < 1 || *width > most || *height > most) {
        fail(option, text, "WxH in pixels, each from 1 to " + std::to_string(most));
    }
    return {0, 0, *width, *height};
}

std::uint64_t parseBytes(const std::string& option, const std::string& text) {
    const std::string units = "kMG";
    const std::size_t unit = text.empty() ? std::string::npos : units.find(text.back());
    const bool hasUnit = unit != std::string::npos;
    const auto number =
        wholeTextAs<std::uint64_t>(hasUnit ? text.substr(0, text.size() - 1) : text);
    const std::uint64_t factor = hasUnit ? 1ULL << (10 * (unit + 1)) : 1;
    if (!number || *number == 0 || *number > std::numeric_limits<std::uint64_t>::max() / factor) {
        fail(option, text, "a number of bytes such as 900M");
    }
    return *number * factor;
}

}  // namespace cli
