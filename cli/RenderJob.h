// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "cli/CameraOptions.h"
#include "cli/ColourOptions.h"
#include "cli/Command.h"
#include "cli/EffectOptions.h"
#include "cli/EffectSession.h"
#include "cli/OcclusionOptions.h"
#include "cli/Progress.h"
#include "cli/RenderFiles.h"
#include "cli/RenderStats.h"
#include "cli/RenderWindows.h"
#include "pictures/Messages.h"
#include "pictures/SourceImage.h"

namespace cli {

// The options of a render, validated; those of the effect and of colours are apart.
struct RenderPlan {
    std::string input;     // as for InputFile
    std::string bundle{};  // empty: wherever it is found
    RenderExtent extent{};
    int bits = 32;
    pictures::AlphaRule alpha = pictures::AlphaRule::kByFile;
    std::optional<pictures::SampleType> outputType{};
    std::optional<double> pixelAspect{};
    bool passThrough = false;
    headless::HostOptions host{};
    bool quiet = false;
    bool strict = false;
    bool stats = false;
};

// The options that are parsed as groups.
struct RenderOptions {
    const EffectOptions& effect;
    const ColourOptions& colour;
    const CameraOptions& camera;
    const OcclusionOptions& occlusion;
};

// One render, from file to file. What it is given must outlive it.
class RenderJob {
public:
    // Sets the effect up with its controls. Throws UsageError and Failure for what can be known
    // before any image is read.
    RenderJob(const RenderPlan& plan, const OutputFile& output, const RenderOptions& options,
              const Invocation& invocation);

    // Reads, renders and writes. Throws the types of Errors.h.
    void run();

private:
    void begin(const char* step, double from, double to);
    void openSource();
    void setLayers();
    void planColours();
    bool copiesAssociated();
    headless::FrameRequest makeRequest();
    void loadSource(headless::FrameRequest request);
    headless::FrameResult renderSlabs(const headless::FrameRequest& request);
    headless::FrameResult renderFrame(headless::FrameRequest request);
    void writeResult(const headless::World& result);

    const pictures::Picture& picture() const { return source_->picture(); }
    double pixelAspect() const {
        return plan_.pixelAspect.value_or(pictures::pixelAspectOf(picture()));
    }
    headless::ParameterSet& parameters() { return session_.effect().parameters(); }

    const RenderPlan& plan_;
    const OutputFile& output_;
    const RenderOptions options_;
    const Invocation& invocation_;
    std::ostream& lines_;  // results for people: not where an image goes
    pictures::Messages messages_;
    pictures::ColourConfig config_;
    EffectSession session_;
    RenderStats stats_;
    Progress progress_;
    std::unique_ptr<InputFile> input_;
    std::unique_ptr<pictures::SourceImage> source_;
    pictures::ColourPlan colours_;
    std::optional<MapScale> map_;  // if there is a depth map
};

}  // namespace cli
