// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/App.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/Errors.h"
#include "cli/options/EffectOptions.h"
#include "cli/options/PresetValues.h"
#include "headless/Parameters.h"

namespace cli {

// --preset and --save-preset, and the settings in a picture's metadata. A preset acts as if its
// values had been given as options, except those that the command line gives or excludes.
class PresetOptions {
public:
    // `controls` are the effect's, with their defaults, and must outlive this object.
    PresetOptions(const headless::ParameterSet& controls, const EffectOptions& effect)
        : controls_(controls), effect_(effect) {}

    // This object must outlive the app.
    void addTo(CLI::App& app);

    // Once the app is parsed: reads the file of --preset, if it is given, a preset or a picture
    // with settings, and gives the app's options its values. Throws Failure and shot::PresetError.
    void load();
    // The same with the settings in the metadata of a picture: FILE or FILE:LAYER.
    void loadFrom(const std::string& picture);

    // The frame that the preset is for, if it says so.
    const std::optional<int>& frame() const { return loaded_.preset.frame; }
    bool saves() const { return !saved_.empty(); }
    // The settings that the options stand for now, with paths as seen from `folder`.
    shot::Preset settings(const std::filesystem::path& folder) const;
    // Throws UsageError if --save-preset would overwrite one of `inputs` or the output, and Failure
    // if it obviously can't be written.
    void checkSaved(const std::vector<std::string>& inputs, const std::string& output) const;
    // Writes the file of --save-preset, if it is given, completely or not at all. Throws Failure.
    void save() const;
    const std::string& file() const { return preset_; }

    // Throws the error again, with the place in the preset of each option that it is about. If none
    // of these is from the command line, the file is to blame: a Failure.
    [[noreturn]] void rethrow(const UsageError& error) const;

private:
    void take(PlacedPreset placed);
    void fill(const std::vector<PresetValue>& values);

    const headless::ParameterSet& controls_;
    const EffectOptions& effect_;
    CLI::App* app_ = nullptr;
    std::string preset_;
    std::string saved_;
    PlacedPreset loaded_;
    std::vector<PresetValue> used_;
};

}  // namespace cli
