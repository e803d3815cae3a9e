// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>

#include "cli/options/CameraSettings.h"
#include "cli/options/EffectOptions.h"
#include "pictures/Picture.h"

namespace cli {

// What --camera says. Lengths of the camera are in millimetres, the focus is in the scene's unit.
struct CameraWishes {
    bool exif = false;  // the file says the rest
    std::optional<double> focalLength;
    std::optional<double> fStop;
    std::optional<double> sensorWidth;
    std::optional<double> sensorHeight;
    std::optional<double> focus;
    bool breathing = false;
};

// Parses "exif" and KEY=VALUE, separated by commas. Throws UsageError, naming the keys,
// for an empty text and a key that is given twice, too.
CameraWishes parseCamera(const std::string& text);

// The options by which the blur is that of a lens.
class CameraOptions {
public:
    void addTo(CLI::App& app);
    bool given() const { return option_ != nullptr && option_->count() > 0; }
    // Throws UsageError for texts that can't be parsed, without a depth map, and if one of `others`
    // sets what the camera sets. `parameters` has the controls.
    void check(const headless::ParameterSet& parameters, const EffectOptions& others) const;
    // The camera in front of `image`, whose pixels are `pixelAspect` times as wide as high, if one
    // is given, for the frame at time 0. Its focus stays unknown if `focusElsewhere`, because
    // another option gives it. Throws UsageError, naming what is missing.
    std::optional<Camera> camera(const pictures::Picture& image, double pixelAspect,
                                 double downsample, bool focusElsewhere) const;

private:
    const CLI::Option* option_ = nullptr;  // belongs to the app
    std::string camera_;
    std::string sceneUnit_;
};

}  // namespace cli
