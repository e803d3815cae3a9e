// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

#include "cli/Command.h"
#include "cli/options/FrameOptions.h"
#include "cli/shot/ShotFiles.h"
#include "cli/shot/ShotOptions.h"

namespace cli {

// `orbel render`: blurs an image file.
class RenderCommand : public Command {
public:
    // `controls` are the effect's, and must outlive this object.
    RenderCommand(CLI::App& parent, const Invocation& invocation,
                  const headless::ParameterSet& controls);
    int run() override;

private:
    void addFileOptions();
    void addExtentOptions();
    void addPixelOptions();
    RenderExtent extent(const std::filesystem::path& output) const;
    RenderPlan plan(const std::filesystem::path& output) const;
    std::optional<std::vector<int>> frames(const ShotFiles& files) const;
    int render();
    void renderOne() const;
    std::filesystem::path settingsFolder() const;
    void checkOutput(const RenderPlan& plan, const std::filesystem::path& output) const;

    const Invocation& invocation_;
    FrameOptions frameOptions_;
    ShotOptions shotOptions_;
    std::string output_;
    std::string outputFormat_;
    std::string region_;
    std::string downsample_ = "1/1";
    std::string bits_;
    std::string outputType_;
    bool keepOverscan_ = false;
    bool cropToDisplay_ = false;
    bool passThrough_ = false;
    bool noSettings_ = false;
    bool force_ = false;
    bool stats_ = false;
};

}  // namespace cli
