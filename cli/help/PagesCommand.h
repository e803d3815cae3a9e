// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "cli/Command.h"

namespace cli {

// `orbel pages FOLDER`, which the help doesn't show: writes the man pages and the completion
// scripts. The build runs it, so that what is installed agrees with the options.
class PagesCommand : public Command {
public:
    explicit PagesCommand(CLI::App& parent);
    int run() override;

private:
    const CLI::App& tool_;
    std::string folder_;
};

}  // namespace cli
