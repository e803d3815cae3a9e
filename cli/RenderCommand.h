#pragma once

#include <optional>

#include "cli/Command.h"
#include "cli/EffectOptions.h"
#include "cli/EffectSession.h"
#include "pictures/Messages.h"
#include "pictures/Picture.h"

namespace cli {

// The numbers of a render's command line, checked.
struct RenderPlan {
    PF_RationalScale scale{1, 1};            // of the downsample
    std::optional<pictures::Window> region;  // in pixels of the full picture
    std::optional<int> bits;
    std::optional<PF_RationalScale> pixelAspect;
    headless::HostOptions host;
};

// `orbel render`: blurs a picture file.
class RenderCommand : public Command {
public:
    RenderCommand(CLI::App& parent, const Invocation& invocation,
                  const std::vector<headless::ParameterInfo>& controls);
    int run() override;

private:
    void addOptions();
    RenderPlan plan() const;
    void checkOutput() const;
    headless::FrameRequest makeRequest(const RenderPlan& plan, const pictures::Picture& picture,
                                       pictures::Messages& messages) const;
    headless::FrameResult renderFrame(headless::Effect& effect,
                                      headless::FrameRequest request) const;

    const Invocation& m_invocation;
    EffectOptions m_effectOptions;
    std::string m_input;
    std::string m_output;
    std::string m_bundle;
    std::string m_region;
    std::string m_downsample = "1/1";
    std::string m_bits;
    std::string m_threads;
    std::string m_pixelAspect;
    std::string m_memoryLimit;
    bool m_keepOverscan = false;
    bool m_quiet = false;
    bool m_stats = false;
};

}  // namespace cli
