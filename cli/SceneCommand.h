#pragma once

#include "cli/Command.h"

namespace cli {

// `orbel scene`: writes the procedural picture and its depth map.
class SceneCommand : public Command {
public:
    SceneCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    const Invocation& m_invocation;
    std::string m_output;
    std::string m_depth;
    std::string m_size = "1920x1080";
};

}  // namespace cli
