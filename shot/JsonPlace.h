// SPDX-License-Identifier: Apache-2.0
#pragma once
// A value of a JSON document together with its place, for messages.

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "shot/Preset.h"

namespace shot {

// "FILE: /parameters/Blur Radius: ", the place as a JSON pointer; "FILE: " for the document.
std::string atPlace(const std::string& source, const std::vector<std::string>& place);

class JsonPlace {
public:
    // Both must outlive this object.
    JsonPlace(const nlohmann::ordered_json& json, const std::string& source)
        : json_(json), source_(source) {}

    // Throws PresetError with the place.
    [[noreturn]] void fail(const std::string& why) const;

    // Throws unless this is an object with no members but `names`.
    void requireMembers(const std::vector<std::string>& names) const;
    // Throws unless this is an object, or a list.
    std::vector<std::string> names() const;
    std::vector<JsonPlace> items() const;

    bool has(const std::string& name) const { return json_.is_object() && json_.contains(name); }
    // Throws if there is no such member.
    JsonPlace operator[](const std::string& name) const;

    bool isList() const { return json_.is_array(); }
    bool isText() const { return json_.is_string(); }
    bool isNumber() const { return json_.is_number(); }
    bool isBox() const { return json_.is_boolean(); }
    bool isObject() const { return json_.is_object(); }
    // Throw unless the value is of this type.
    std::string text() const;
    double number() const;
    bool box() const;
    int whole(int least, int most) const;

private:
    JsonPlace(const JsonPlace& parent, const nlohmann::ordered_json& json, const std::string& name);

    const nlohmann::ordered_json& json_;
    const std::string& source_;
    std::vector<std::string> place_;
};

}  // namespace shot
