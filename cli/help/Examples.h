// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string>

namespace cli {

struct Example {
    const char* command;  // the whole line, such as "orbel about"
    const char* purpose;  // what it is for, such as "print the version"
};

// The examples of a command, or of the tool itself by the name "orbel". Empty for unknown names.
std::span<const Example> examplesOf(const std::string& command);

}  // namespace cli
