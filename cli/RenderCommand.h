// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "cli/ColourOptions.h"
#include "cli/Command.h"
#include "cli/EffectOptions.h"
#include "cli/EffectSession.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace cli {

// The numbers of a render's command line, validated.
struct RenderPlan {
    PF_RationalScale scale{1, 1};            // of the downsample, at most 1
    std::optional<pictures::Window> region;  // in full-resolution pixels
    std::optional<int> bits;
    std::optional<PF_RationalScale> pixelAspect;
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
    RenderPlan plan() const;
    void checkOutput() const;
    pictures::ColourPlan decodeColours(pictures::Picture& picture,
                                       const pictures::ColourConfig& config,
                                       pictures::Messages& messages) const;
    headless::FrameRequest makeRequest(const RenderPlan& plan, const pictures::Picture& picture,
                                       int usualBits, pictures::Messages& messages) const;
    headless::FrameResult renderFrame(headless::Effect& effect,
                                      headless::FrameRequest request) const;

    const Invocation& invocation_;
    EffectOptions effectOptions_;
    ColourOptions colourOptions_;
    std::string input_;
    std::string output_;
    std::string bundle_;
    std::string region_;
    std::string downsample_ = "1/1";
    std::string bits_;
    std::string threads_;
    std::string pixelAspect_;
    std::string memoryLimit_;
    bool keepOverscan_ = false;
    bool quiet_ = false;
    bool stats_ = false;
};

}  // namespace cli
