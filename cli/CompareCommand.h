#pragma once

#include "cli/Command.h"
#include "pictures/Picture.h"

namespace cli {

// `orbel compare`: exit code 1 if two pictures differ by more than a tolerance.
class CompareCommand : public Command {
public:
    CompareCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    const Invocation& m_invocation;
    std::string m_first;
    std::string m_second;
    std::string m_tolerance = "0";
};

}  // namespace cli
