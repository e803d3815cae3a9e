// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <OpenImageIO/color.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pictures {

// The colour spaces that names stand for: those of an OpenColorIO configuration, if there is one,
// and the transfer functions that the tool knows itself.
class ColourConfig {
public:
    // Without a configuration.
    ColourConfig() = default;
    // Throws Failure if the file can't be read as one.
    explicit ColourConfig(const std::string& file);

    // The configuration's own name for a colour space, an alias, a role, or a transfer function
    // that it holds under another name: "linear" is also the role scene_linear. In any letter case.
    // None if it has no such space.
    std::optional<std::string> find(const std::string& name) const;
    // Whether the name stands for a colour space at all.
    bool knows(const std::string& name) const;
    // Whether its values are proportional to light.
    bool isLinear(const std::string& name) const;
    // All names, for messages.
    std::string knownNames() const;

    // The conversion between two spaces that find() returned. Throws Failure if there is none.
    OIIO::ColorProcessorHandle processor(const std::string& from, const std::string& to) const;

private:
    std::string file_;
    std::shared_ptr<OIIO::ColorConfig> config_;
};

}  // namespace pictures
