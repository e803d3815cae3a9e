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
    const Invocation& m_invocation;
    EffectOptions m_effectOptions;
    std::string m_bundle;
    bool m_json = false;
    bool m_state = false;
};

}  // namespace cli
