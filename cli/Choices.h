// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "cli/Errors.h"
#include "shot/Nearest.h"

namespace cli {

// What a name on the command line means.
template <class Value>
using Choice = std::pair<const char*, Value>;

// Such as "a, b or c".
template <class Value>
std::string namesOf(std::span<const Choice<Value>> choices) {
    std::string list;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (i > 0) list += i + 1 < choices.size() ? ", " : " or ";
        list += choices[i].first;
    }
    return list;
}

// The choice with this name, or the only one whose name begins with it. Throws UsageError, naming
// the option and a choice that is nearly this one.
template <class Value, std::size_t N>
Value parseChoice(const std::string& option, const std::string& text,
                  const Choice<Value> (&choices)[N]) {
    const Choice<Value>* begun = nullptr;
    int count = 0;
    for (const Choice<Value>& choice : choices) {
        if (text == choice.first) return choice.second;
        if (text.empty() || !std::string(choice.first).starts_with(text)) continue;
        begun = &choice;
        ++count;
    }
    if (count == 1) return begun->second;
    std::vector<std::string> names;
    for (const Choice<Value>& choice : choices) names.emplace_back(choice.first);
    throw UsageError(option + " takes " + namesOf(std::span<const Choice<Value>>(choices)) +
                     ", not \"" + text + "\"" + shot::suggestion(text, names));
}

}  // namespace cli
