// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

namespace cli {

// Runs one command line and returns the exit code. An error becomes one line on `err`.
int runTool(const Invocation& given);

}  // namespace cli
