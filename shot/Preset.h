// SPDX-License-Identifier: Apache-2.0
#pragma once
// The settings of a render as data.

#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "shot/Keys.h"

namespace shot {

inline constexpr const char* kEffectName = "Orbel";

// A preset that can't be used; the message names the file, the place in it and what is possible.
class PresetError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Parameter {
    std::string label;  // of the control, or "Group/Label"
    Keys keys;          // at least one

    bool operator==(const Parameter&) const = default;
};

// Files are as the command line takes them: FILE or FILE:LAYER, or a pattern of a sequence. Numbers
// may be infinite where the options take "inf".
struct DepthInput {
    std::optional<std::string> file{};
    std::optional<std::string> kind{};
    std::optional<double> near{};
    std::optional<double> far{};
    std::optional<double> focus{};
    std::optional<Point> focusAt{};
    bool automatic = false;
    bool inverse = false;

    bool operator==(const DepthInput&) const = default;
};

// Lengths in millimetres, the focus in the unit.
struct CameraInput {
    bool exif = false;
    std::optional<double> focalLength{};
    std::optional<double> fStop{};
    std::optional<double> sensorWidth{};
    std::optional<double> sensorHeight{};
    std::optional<double> focus{};
    bool breathing = false;
    std::optional<std::string> unit{};  // of the scene

    bool operator==(const CameraInput&) const = default;
};

struct Inputs {
    std::optional<DepthInput> depth{};
    std::optional<std::string> shape{};  // a file
    std::optional<CameraInput> camera{};

    bool operator==(const Inputs&) const = default;
};

// An option of the tool that changes the picture.
struct ToolOption {
    const char* name;  // without hyphens
    bool flag;         // takes no value
};
std::span<const ToolOption> toolOptions();

struct Preset {
    std::string effect = kEffectName;
    std::string version{};       // of the program that wrote it: "1.4.0"
    std::optional<int> frame{};  // of the picture that these are the settings of
    std::vector<Parameter> parameters{};
    Inputs inputs{};
    // The values of toolOptions() by name; of a flag that is set, "true".
    std::map<std::string, std::string> tool{};

    bool operator==(const Preset&) const = default;
};

}  // namespace shot
