// SPDX-License-Identifier: Apache-2.0
#pragma once
// Scripts by which a shell completes the tool's command lines. Each takes the tool and its commands
// as describeCommands() returns them.

#include <string>
#include <vector>

#include "cli/help/CommandFacts.h"

namespace cli {

// To be sourced, or loaded by the package bash-completion as "orbel".
std::string bashCompletion(const std::vector<CommandFacts>& all);
// The function _orbel, in a file of this name in a folder of fpath.
std::string zshCompletion(const std::vector<CommandFacts>& all);
// "orbel.fish" in one of fish's folders for completions.
std::string fishCompletion(const std::vector<CommandFacts>& all);

}  // namespace cli
