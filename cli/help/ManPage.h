// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "cli/help/CommandFacts.h"

namespace cli {

// The page's name without its section: "orbel", "orbel-render".
std::string manPageName(const CommandFacts& command);

// The page of `command` in the macros of man(7). `all` are the tool and its commands, for the list
// in the tool's page and for references.
std::string manPage(const CommandFacts& command, const std::vector<CommandFacts>& all);

}  // namespace cli
