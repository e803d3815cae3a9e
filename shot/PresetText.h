// SPDX-License-Identifier: Apache-2.0
#pragma once
// Presets as JSON, described in docs/presets.md and docs/preset.schema.json.

#include <cstddef>
#include <string>
#include <string_view>

#include "shot/Preset.h"

namespace shot {

inline constexpr std::size_t kMostPresetBytes = 4U << 20;  // thousands of keys for each control

// Reads JSON. `source` is the file's name for messages, `version` that of this program. Throws
// PresetError for anything but a preset of this effect that is not newer than the program. Labels
// and values of parameters are not looked up; see Controls.h.
Preset parsePreset(std::string_view json, const std::string& source, const std::string& version);

enum class Layout { kIndented, kOneLine };
// ASCII only. parsePreset() gives an equal preset back.
std::string presetText(const Preset& preset, Layout layout);

}  // namespace shot
