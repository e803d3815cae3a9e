// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/EffectOptions.h"

namespace cli {

// `orbel params`: the controls that the effect declares.
class ParamsCommand : public Command {
public:
    ParamsCommand(CLI::App& parent, const Invocation& invocation,
                  const std::vector<headless::ParameterInfo>& controls);
    int run() override;

private:
    const Invocation& invocation_;
    EffectOptions effectOptions_;
    std::string bundle_;
    bool json_ = false;
    bool state_ = false;
};

}  // namespace cli
