// SPDX-License-Identifier: Apache-2.0
#include "headless/Accounts.h"

#include <algorithm>

namespace headless {

namespace {

std::string line(const Outstanding& item) {
    std::string text = std::to_string(item.count) + " x " + item.kind + " \"" + item.name + "\"";
    if (item.bytes > 0) text += ", " + std::to_string(item.bytes) + " bytes";
    if (item.locks > 0) text += ", " + std::to_string(item.locks) + " locks";
    return text + " not returned\n";
}

}  // namespace

bool Accounts::allGivenBackBut(const std::string& name) const {
    return std::all_of(outstanding.begin(), outstanding.end(),
                       [&](const Outstanding& item) { return item.name == name; });
}

std::string Accounts::describe() const {
    std::string text;
    for (const auto& item : outstanding) text += line(item);
    for (const auto& fault : faults) text += "fault: " + fault + "\n";
    return text;
}

}  // namespace headless
