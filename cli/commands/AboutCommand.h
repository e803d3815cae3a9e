// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

namespace cli {

// `orbel about`: prints the effect's about text.
class AboutCommand : public Command {
public:
    AboutCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    const Invocation& invocation_;
    std::string bundle_;
};

}  // namespace cli
