// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <optional>

#include "cli/CameraOptions.h"
#include "cli/ColourOptions.h"
#include "cli/Command.h"
#include "cli/EffectOptions.h"
#include "cli/EffectSession.h"
#include "cli/Progress.h"
#include "cli/RenderWindows.h"
#include "pictures/Messages.h"
#include "pictures/SourceImage.h"

namespace cli {

// The options of a render, validated.
struct RenderPlan {
    RenderExtent extent;
    int bits = 32;
    pictures::AlphaRule alpha = pictures::AlphaRule::kByFile;
    std::optional<pictures::SampleType> outputType;
    std::optional<double> pixelAspect;
    bool passThrough = false;
    headless::HostOptions host;
};

// `orbel render`: blurs an image file.
class RenderCommand : public Command {
public:
    RenderCommand(CLI::App& parent, const Invocation& invocation,
                  const std::vector<headless::ParameterInfo>& controls);
    int run() override;

private:
    void addOptions();
    RenderPlan plan(const std::filesystem::path& output) const;
    void checkOutput(const RenderPlan& plan, const std::filesystem::path& output) const;
    headless::FrameRequest makeRequest(const RenderPlan& plan,
                                       const pictures::SourceImage& source) const;
    void loadSource(pictures::SourceImage& source, EffectSession& session, const RenderPlan& plan,
                    const pictures::ColourPlan& colours, headless::FrameRequest request,
                    Progress& progress, pictures::Messages& messages) const;
    headless::FrameResult renderFrame(headless::Effect& effect, headless::FrameRequest request,
                                      Progress& progress) const;
    void writeResult(const std::filesystem::path& output, const RenderPlan& plan,
                     const pictures::ColourPlan& colours, const pictures::SourceImage& source,
                     const headless::World& result, Progress& progress,
                     pictures::Messages& messages) const;

    const Invocation& invocation_;
    EffectOptions effectOptions_;
    ColourOptions colourOptions_;
    CameraOptions cameraOptions_;
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
    bool quiet_ = false;
    bool strict_ = false;
    bool stats_ = false;
};

}  // namespace cli
