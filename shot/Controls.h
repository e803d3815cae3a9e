// SPDX-License-Identifier: Apache-2.0
#pragma once
// Keys and presets on the controls of an effect.

#include <functional>
#include <string>
#include <vector>

#include "headless/Parameters.h"
#include "shot/Preset.h"

namespace shot {

// A key as the host takes it. Throws headless::ParameterError for a value or an interpolation that
// the control can't have.
headless::Keyframe keyframeOf(const headless::ParameterInfo& info, const Key& key);

// Gives a control all its values. Throws headless::ParameterError.
void setKeys(headless::ParameterSet& parameters, int index, const Keys& keys);

// The values of a control that isn't a layer.
Keys keysOf(const headless::ParameterSet& parameters, int index);

// Sets the controls of a preset, and returns their indices in its order. `source` is the file's
// name for messages. Throws PresetError for an unknown label, one that occurs twice, a value of the
// wrong type or out of range, and keys where there can be none.
std::vector<int> applyParameters(const Preset& preset, const std::string& source,
                                 headless::ParameterSet& parameters);

// The controls for which `wanted` returns true, except layers, in the effect's order.
std::vector<Parameter> parametersOf(
    const headless::ParameterSet& parameters,
    const std::function<bool(const headless::ParameterInfo&)>& wanted);

}  // namespace shot
