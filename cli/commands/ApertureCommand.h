// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>

#include "cli/Command.h"
#include "pictures/apertures/Apertures.h"

namespace cli {

// `orbel aperture`: draws an image for --custom-blur-shape.
class ApertureCommand : public Command {
public:
    ApertureCommand(CLI::App& parent, const Invocation& invocation);
    int run() override;

private:
    void addOptionsOfKinds();
    bool given(const std::string& option) const;
    apertures::Values valuesOf(const apertures::Kind& kind) const;
    void requireNoOptionsOfKinds() const;
    void drawOne() const;
    void drawAll() const;

    const Invocation& invocation_;
    std::string kind_;
    std::string output_;
    std::string size_ = "256";
    std::string bits_;
    std::map<std::string, std::string> options_;  // texts, by the names of the kinds' options
    bool list_ = false;
};

}  // namespace cli
