// SPDX-License-Identifier: Apache-2.0
#include "bundle/descriptor/Description.h"

#include <array>
#include <charconv>
#include <istream>
#include <map>
#include <string_view>

#include "effect/Identity.h"

namespace descriptor {
namespace {

constexpr std::array<std::string_view, 8> kKeys{
    "name",           "category",  "match_name", "entry_point", "interface_version",
    "effect_version", "out_flags", "out_flags2"};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r";
    const auto first = text.find_first_not_of(kSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

using Fields = std::map<std::string, std::string, std::less<>>;

void readLine(std::string_view line, Fields& fields) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) {
        throw DescriptionError("no 'key = value': " + std::string(line));
    }
    const std::string key(trimmed(line.substr(0, equals)));
    bool known = false;
    for (const std::string_view k : kKeys) known = known || k == key;
    if (!known) throw DescriptionError("unknown field '" + key + "'");
    if (!fields.emplace(key, trimmed(line.substr(equals + 1))).second) {
        throw DescriptionError("field '" + key + "' stands twice");
    }
}

Fields readFields(std::istream& text) {
    Fields fields;
    std::string line;
    while (std::getline(text, line)) {
        const std::string_view content = trimmed(line);
        if (!content.empty() && content.front() != '#') readLine(content, fields);
    }
    for (const std::string_view key : kKeys) {
        if (!fields.contains(key)) {
            throw DescriptionError("field '" + std::string(key) + "' is missing");
        }
    }
    return fields;
}

template <typename Number>
Number number(std::string_view field, std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = hexadecimal ? text.substr(2) : text;
    Number value{};
    const auto end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
    if (error != std::errc{} || stop != end || digits.empty()) {
        throw DescriptionError("field '" + std::string(field) +
                               "' is no number that fits: " + std::string(text));
    }
    return value;
}

void checkText(const char* field, const std::string& text, std::size_t longest) {
    if (text.empty()) throw DescriptionError(std::string("field '") + field + "' is empty");
    if (text.size() > longest) {
        throw DescriptionError(std::string("field '") + field + "' has " +
                               std::to_string(text.size()) + " bytes, at most " +
                               std::to_string(longest) + " fit");
    }
}

}  // namespace

Description orbelDescription() {
    Description d;
    d.name = identity::kName;
    d.category = identity::kCategory;
    d.matchName = identity::kMatchName;
    d.entryPoint = identity::kEntryPoint;
    d.interfaceMajor = identity::kInterfaceMajor;
    d.interfaceMinor = identity::kInterfaceMinor;
    d.effectVersion = identity::kPackedVersion;
    d.outFlags = static_cast<std::uint32_t>(identity::kOutFlags);
    d.outFlags2 = static_cast<std::uint32_t>(identity::kOutFlags2);
    return d;
}

void check(const Description& d) {
    checkText("name", d.name, kMaxDisplayName);
    checkText("category", d.category, kMaxText);
    checkText("match_name", d.matchName, kMaxText);
    checkText("entry_point", d.entryPoint, kMaxText);
}

Description read(std::istream& text) {
    const Fields fields = readFields(text);
    Description d;
    d.name = fields.at("name");
    d.category = fields.at("category");
    d.matchName = fields.at("match_name");
    d.entryPoint = fields.at("entry_point");
    const std::string& version = fields.at("interface_version");
    const auto dot = version.find('.');
    if (dot == std::string::npos) {
        throw DescriptionError("field 'interface_version' is not MAJOR.MINOR: " + version);
    }
    const std::string_view both = version;
    d.interfaceMajor = number<std::uint16_t>("interface_version", both.substr(0, dot));
    d.interfaceMinor = number<std::uint16_t>("interface_version", both.substr(dot + 1));
    d.effectVersion = number<std::uint32_t>("effect_version", fields.at("effect_version"));
    d.outFlags = number<std::uint32_t>("out_flags", fields.at("out_flags"));
    d.outFlags2 = number<std::uint32_t>("out_flags2", fields.at("out_flags2"));
    check(d);
    return d;
}

}  // namespace descriptor
