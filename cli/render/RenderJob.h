// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "cli/Command.h"
#include "cli/EffectSession.h"
#include "cli/Progress.h"
#include "cli/options/CameraOptions.h"
#include "cli/options/ColourOptions.h"
#include "cli/options/EffectOptions.h"
#include "cli/options/OcclusionOptions.h"
#include "cli/render/RenderFiles.h"
#include "cli/render/RenderStats.h"
#include "cli/render/RenderWindows.h"
#include "pictures/Messages.h"
#include "pictures/SourceImage.h"
#include "shot/Preset.h"

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
    std::optional<shot::Preset> settings{};  // for the metadata; paths relative to the output
    bool quiet = false;
    bool strict = false;
    bool force = false;
    bool stats = false;
};

// The options that are parsed as groups.
struct RenderOptions {
    const EffectOptions& effect;
    const ColourOptions& colour;
    const CameraOptions& camera;
    const OcclusionOptions& occlusion;
};

// What the frames of a render share: the effect, set up with its controls.
class RenderSession {
public:
    // Throws UsageError and Failure for what can be known before any image is read. What it is
    // given must outlive it.
    RenderSession(const RenderPlan& plan, const RenderOptions& options,
                  const Invocation& invocation, pictures::Messages& messages);

    const RenderPlan& plan() const { return plan_; }
    const RenderOptions& options() const { return options_; }
    std::istream& in() { return in_; }
    headless::Host& host() { return effect_.host(); }
    headless::Effect& effect() { return effect_.effect(); }
    const pictures::ColourConfig& config() const { return config_; }
    // Warns if the effect misused the host's interface, when no frame is being rendered.
    void checkBooks(pictures::Messages& messages);

private:
    const RenderPlan& plan_;
    const RenderOptions options_;
    std::istream& in_;
    pictures::ColourConfig config_;
    EffectSession effect_;
};

// The files of a frame.
struct FrameFiles {
    std::string input;           // as for InputFile
    const OutputFile* output;    // null: for a frame that is only looked at
    std::optional<int> frame{};  // its number, the time of the controls; none: a still
    LayerNames layers{};
    const DepthFindings* findings = nullptr;  // as for MapUse
    bool black = false;                       // a picture like the input, but black
    bool mapPerPixel = false;                 // lay the depth map over the picture, as MapUse
    std::string at{};                         // a pixel to look at, as MapUse
};

// Who is told of a frame.
struct FrameWatchers {
    pictures::Messages& messages;
    std::ostream& lines;  // results for people
    Progress& progress;
    RenderStats& stats;
};

// One frame, from file to file. What it is given must outlive it. Frames of one session may be
// rendered on several threads at once.
class RenderJob {
public:
    RenderJob(RenderSession& session, FrameFiles files, const FrameWatchers& watchers);

    // Reads, renders and writes. Throws the types of Errors.h.
    void run();
    // Reads the depth map only, as run() does.
    void readMap();
    // Reads and sets up the frame without rendering it, as run() does. The request is valid as long
    // as this object.
    headless::FrameRequest prepare();
    // After prepare(): the controls and layers, and how colours are converted for the output.
    const headless::ParameterSet& parameters() const { return parameters_; }
    const pictures::ColourPlan& colours() const { return colours_; }
    const pictures::Picture& picture() const { return source_->picture(); }
    double pixelAspect() const {
        return plan_.pixelAspect.value_or(pictures::pixelAspectOf(picture()));
    }
    // After readMap() or prepare(): how the map is put on the effect's scale.
    const std::optional<MapScale>& map() const { return map_; }
    // After readMap(): the scene that bounds between slabs have to suit.
    occlusion::View view() const;
    pictures::Size size() const { return displaySize(picture()); }

private:
    void begin(const char* step, double from, double to);
    void openSource();
    void setLayers();
    void planColours();
    bool copiesAssociated();
    headless::FrameRequest makeRequest();
    void loadSource(headless::FrameRequest request);
    occlusion::Options slabs(const MapScale& map) const;
    headless::FrameResult renderSlabs(const headless::FrameRequest& request);
    headless::FrameResult renderFrame(headless::FrameRequest request);
    headless::FrameResult blackFrame(const headless::FrameRequest& request);
    std::string settingsText() const;
    void writeResult(const headless::World& result);

    double downsample() const {
        return static_cast<double>(plan_.extent.scale.num) / plan_.extent.scale.den;
    }
    A_Time time() const { return {files_.frame.value_or(0), 1}; }

    RenderSession& session_;
    const RenderPlan& plan_;
    const RenderOptions& options_;
    const FrameFiles files_;
    const FrameWatchers watchers_;
    pictures::Messages& messages_;
    headless::ParameterSet parameters_;
    std::unique_ptr<InputFile> input_;
    std::unique_ptr<pictures::SourceImage> source_;
    pictures::ColourPlan colours_;
    std::optional<MapScale> map_;  // if there is a depth map
};

}  // namespace cli
