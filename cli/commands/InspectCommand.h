// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/options/FrameOptions.h"
#include "inspect/Canvas.h"
#include "inspect/Spots.h"

namespace cli {

// `orbel inspect`: draws what the effect does in a frame, as measured through it.
class InspectCommand : public Command {
public:
    // `controls` are the effect's, and must outlive this object.
    InspectCommand(CLI::App& parent, const Invocation& invocation,
                   const headless::ParameterSet& controls);
    int run() override;

private:
    bool drawsFolder() const;
    std::filesystem::path file(const std::string& name) const;
    void check() const;
    void inspect();
    void inspectDepths(inspect::Bench bench, const RenderJob& job, const MapScale& map,
                       Progress& progress) const;
    void write(const std::vector<std::vector<inspect::Canvas>>& rows) const;

    const Invocation& invocation_;
    FrameOptions frameOptions_;
    std::string output_;
    std::string at_;
};

}  // namespace cli
