// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

#include "cli/CameraOptions.h"
#include "cli/ColourOptions.h"
#include "cli/Command.h"
#include "cli/EffectOptions.h"
#include "cli/PresetOptions.h"
#include "cli/RenderJob.h"
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
    void addProcessOptions();
    RenderExtent extent(const std::filesystem::path& output) const;
    headless::HostOptions hostOptions() const;
    RenderPlan plan(const std::filesystem::path& output) const;
    RenderOptions options() const {
        return {effectOptions_, colourOptions_, cameraOptions_, occlusionOptions_};
    }
    std::optional<std::vector<int>> frames(const ShotFiles& files) const;
    int render();
    void renderOne() const;
    std::filesystem::path settingsFolder() const;
    void checkOutput(const RenderPlan& plan, const std::filesystem::path& output) const;

    const Invocation& invocation_;
    EffectOptions effectOptions_;
    ColourOptions colourOptions_;
    CameraOptions cameraOptions_;
    OcclusionOptions occlusionOptions_;
    ShotOptions shotOptions_;
    PresetOptions presetOptions_;
    std::string input_;
    std::string output_;
    std::string outputFormat_;
    std::string bundle_;
    std::string region_;
    std::string downsample_ = "1/1";
    std::string bits_;
    std::string alpha_;
    std::string outputType_;
    std::string threads_;
    std::string pixelAspect_;
    std::string memoryLimit_;
    bool keepOverscan_ = false;
    bool cropToDisplay_ = false;
    bool passThrough_ = false;
    bool noSettings_ = false;
    bool quiet_ = false;
    bool strict_ = false;
    bool force_ = false;
    bool stats_ = false;
};

}  // namespace cli
