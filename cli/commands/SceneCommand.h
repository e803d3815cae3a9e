// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

namespace cli {

// `orbel scene`: writes the procedural test image and its depth map.
class SceneCommand : public Command {
public:
    SceneCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    const Invocation& invocation_;
    std::string output_;
    std::string depth_;
    std::string size_ = "1920x1080";
};

}  // namespace cli
