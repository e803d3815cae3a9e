// SPDX-License-Identifier: Apache-2.0
#include "shot/JsonPlace.h"

#include <algorithm>

#include "shot/Nearest.h"

namespace shot {

std::string atPlace(const std::string& source, const std::vector<std::string>& place) {
    std::string pointer;
    for (const std::string& name : place) {
        pointer += '/';
        for (const char c : name) {
            if (c == '~') {
                pointer += "~0";
            } else if (c == '/') {
                pointer += "~1";
            } else {
                pointer += c;
            }
        }
    }
    return source + ": " + pointer + (pointer.empty() ? "" : ": ");
}

JsonPlace::JsonPlace(const JsonPlace& parent, const nlohmann::ordered_json& json,
                     const std::string& name)
    : json_(json), source_(parent.source_), place_(parent.place_) {
    place_.push_back(name);
}

void JsonPlace::fail(const std::string& why) const {
    throw PresetError(atPlace(source_, place_) + why);
}

void JsonPlace::requireMembers(const std::vector<std::string>& names) const {
    for (const std::string& name : this->names()) {
        if (std::ranges::find(names, name) != names.end()) continue;
        (*this)[name].fail("is not known here" + suggestion(name, names));
    }
}

std::vector<std::string> JsonPlace::names() const {
    if (!json_.is_object())
        fail("must be an object in braces, not " + std::string(json_.type_name()));
    std::vector<std::string> names;
    for (const auto& member : json_.items()) names.push_back(member.key());
    return names;
}

std::vector<JsonPlace> JsonPlace::items() const {
    if (!json_.is_array())
        fail("must be a list in brackets, not " + std::string(json_.type_name()));
    std::vector<JsonPlace> items;
    for (std::size_t i = 0; i < json_.size(); ++i) {
        items.push_back(JsonPlace(*this, json_[i], std::to_string(i)));
    }
    return items;
}

JsonPlace JsonPlace::operator[](const std::string& name) const {
    if (!has(name)) fail("lacks \"" + name + "\"");
    return {*this, json_.at(name), name};
}

std::string JsonPlace::text() const {
    if (!json_.is_string()) fail("must be a text in quotes, not " + std::string(json_.type_name()));
    return json_.get<std::string>();
}

double JsonPlace::number() const {
    if (!json_.is_number()) fail("must be a number, not " + std::string(json_.type_name()));
    return json_.get<double>();
}

bool JsonPlace::box() const {
    if (!json_.is_boolean()) fail("must be true or false, not " + std::string(json_.type_name()));
    return json_.get<bool>();
}

int JsonPlace::whole(int least, int most) const {
    const double value = number();
    if (value >= least && value <= most && value == static_cast<int>(value)) {
        return static_cast<int>(value);
    }
    fail("must be a whole number from " + std::to_string(least) + " to " + std::to_string(most) +
         ", not " + exactText(value));
}

}  // namespace shot
