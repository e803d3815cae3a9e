// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "pictures/Comparison.h"

namespace cli {

// `orbel compare`: exit code 1 if two images differ by more than a tolerance, 2 if they can't be
// compared.
class CompareCommand : public Command {
public:
    CompareCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    void print(const pictures::Difference& difference,
               const std::vector<pictures::DifferentPart>& parts) const;
    void printJson(const pictures::Difference& difference,
                   const std::vector<pictures::DifferentPart>& parts) const;
    void writeDifference(const pictures::Picture& a, const pictures::Picture& b,
                         double largest) const;

    const Invocation& invocation_;
    std::string first_;
    std::string second_;
    std::string tolerance_ = "0";
    std::string difference_;
    bool json_ = false;
};

}  // namespace cli
