// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "cli/Command.h"

namespace cli {

// `orbel doctor`: checks that the tool, its bundle and its libraries work on this machine. Prints a
// line for each thing, "ok" or "bad", and returns 1 if any is bad.
class DoctorCommand : public Command {
public:
    DoctorCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    void say(bool ok, const std::string& text);
    void tellMachine();
    void checkBundle();

    const Invocation& invocation_;
    std::string bundle_;
    bool healthy_ = true;
};

}  // namespace cli
