// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/options/EffectOptions.h"
#include "cli/options/PresetOptions.h"
#include "headless/Effect.h"

namespace cli {

// `orbel params`: the controls that the effect declares.
class ParamsCommand : public Command {
public:
    // `controls` are the effect's, and must outlive this object.
    ParamsCommand(CLI::App& parent, const Invocation& invocation,
                  const headless::ParameterSet& controls);
    int run() override;

private:
    void load();
    void list();
    void showState(headless::Effect& effect) const;

    const Invocation& invocation_;
    EffectOptions effectOptions_;
    PresetOptions presetOptions_;
    std::string from_;
    std::string bundle_;
    bool json_ = false;
    bool state_ = false;
};

}  // namespace cli
