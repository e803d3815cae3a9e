// SPDX-License-Identifier: Apache-2.0
#include "pictures/files/PictureSettings.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace pictures {
namespace {

constexpr const char* kAttribute = "Orbel";
constexpr const char* kDescription = "ImageDescription";
constexpr std::string_view kMark = "Orbel: {";      // of the line in a description
constexpr std::size_t kLongestDescription = 30000;  // a JPEG has it twice in a segment of 64 kB

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
    return std::ranges::find(names, name) != names.end();
}

// Where the settings begin in a description, with the line break before them.
std::size_t beginOf(const std::string& description) {
    const std::size_t mark = description.find(kMark);
    if (mark == std::string::npos) return std::string::npos;
    return mark > 0 && description[mark - 1] == '\n' ? mark - 1 : mark;
}

void erase(OIIO::ImageSpec& imageSpec) {
    imageSpec.erase_attribute(kAttribute);
    std::string description(imageSpec.get_string_attribute(kDescription));
    const std::size_t begin = beginOf(description);
    if (begin == std::string::npos) return;
    const std::size_t end = description.find('\n', begin + 1);
    description.erase(begin, end == std::string::npos ? end : end - begin);
    imageSpec.erase_attribute(kDescription);
    if (!description.empty()) imageSpec.attribute(kDescription, description);
}

bool append(OIIO::ImageSpec& imageSpec, const std::string& line) {
    std::string description(imageSpec.get_string_attribute(kDescription));
    description.append(description.empty() ? "" : "\n").append(kAttribute).append(": ");
    description.append(line);
    if (description.size() > kLongestDescription) return false;
    imageSpec.attribute(kDescription, description);
    return true;
}

}  // namespace

bool setSettings(OIIO::ImageSpec& imageSpec, const PictureFormat& format, const std::string& line) {
    erase(imageSpec);
    if (line.empty()) return true;
    if (isOneOf(format.name, {"openexr", "png"})) {
        imageSpec.attribute(kAttribute, line);
        return true;
    }
    return !isOneOf(format.name, {"tiff", "jpeg", "heif"}) || append(imageSpec, line);
}

std::string settingsIn(const OIIO::ImageSpec& imageSpec) {
    std::string line(imageSpec.get_string_attribute(kAttribute));
    if (!line.empty()) return line;
    const std::string description(imageSpec.get_string_attribute(kDescription));
    const std::size_t mark = description.find(kMark);
    if (mark == std::string::npos) return {};
    line = description.substr(mark + kMark.size() - 1);
    return line.substr(0, line.find('\n'));
}

}  // namespace pictures
