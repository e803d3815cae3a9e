#pragma once

#include "cli/Command.h"

namespace cli {

// Runs one command line; gives the exit code. Errors become one line on `err`.
int runTool(const Invocation& invocation);

}  // namespace cli
