// SPDX-License-Identifier: Apache-2.0
#pragma once
// A preset as values of the tool's options, and back.

#include <CLI/App.hpp>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/options/EffectOptions.h"
#include "headless/Parameters.h"
#include "shot/Preset.h"

namespace cli {

// A preset and the folder that its paths are relative to.
struct PlacedPreset {
    shot::Preset preset{};
    std::filesystem::path folder{};
    std::string source{};  // for messages
};

// The value of an option that a preset gives.
struct PresetValue {
    std::string option;  // without hyphens
    std::string text;    // "true" for a flag
    std::string place;   // in the preset, for messages
};

// Whether an option was given on the command line of `app`, or by a preset.
bool isGiven(const CLI::App& app, const std::string& option);

// The options with which the tool does what the preset says. Throws shot::PresetError for
// parameters that `controls` don't have.
std::vector<PresetValue> valuesOf(const PlacedPreset& placed,
                                  const headless::ParameterSet& controls);

// The preset of the options given to `app`, with paths relative to `folder`. What the app has no
// options for is taken from `base`. Controls that the tool sets itself unless they are given are
// left out; all others have their values. `version` is this program's. Throws UsageError for
// values that can't be.
shot::Preset presetOf(const CLI::App& app, const EffectOptions& effect,
                      const headless::ParameterSet& controls, const PlacedPreset& base,
                      const std::filesystem::path& folder, const std::string& version);

}  // namespace cli
