// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>

#include "cli/options/CameraOptions.h"
#include "cli/options/ColourOptions.h"
#include "cli/options/EffectOptions.h"
#include "cli/options/OcclusionOptions.h"
#include "cli/options/PresetOptions.h"
#include "cli/render/RenderJob.h"

namespace cli {

// The options of a frame's input and of how it is blurred, for the commands that render or look at
// one.
class FrameOptions {
public:
    // `controls` are the effect's, and must outlive this object.
    explicit FrameOptions(const headless::ParameterSet& controls)
        : effect_(controls.infos()), presets_(controls, effect_) {}

    // INPUT, which `inputHelp` describes, and how it is blurred. This object must outlive the app.
    void addTo(CLI::App& app, const std::string& inputHelp);
    // How pixels are read, and the process.
    void addImageTo(CLI::App& app);

    const std::string& input() const { return input_; }
    const EffectOptions& effect() const { return effect_; }
    PresetOptions& presets() { return presets_; }
    const PresetOptions& presets() const { return presets_; }
    RenderOptions groups() const { return {effect_, colour_, camera_, occlusion_}; }
    // What these options say of a render. Throws UsageError.
    RenderPlan plan() const;
    // Throws UsageError for an output that is a file to be read or the preset to be saved, and
    // Failure if it obviously can't be written.
    void checkOutput(const std::filesystem::path& output) const;

private:
    void addProcessOptions(CLI::App& app);
    headless::HostOptions hostOptions() const;

    EffectOptions effect_;
    ColourOptions colour_;
    CameraOptions camera_;
    OcclusionOptions occlusion_;
    PresetOptions presets_;
    std::string input_;
    std::string bundle_;
    std::string alpha_;
    std::string pixelAspect_;
    std::string threads_;
    std::string memoryLimit_;
    bool quiet_ = false;
    bool strict_ = false;
};

}  // namespace cli
