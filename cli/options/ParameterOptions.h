// SPDX-License-Identifier: Apache-2.0
#pragma once
// Command-line options for the controls that the effect declares.

#include <CLI/App.hpp>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "headless/Parameters.h"

namespace cli {

// The option of a control, without the leading hyphens: the label in lower case with hyphens, such
// as "blur-radius". "Layer" and "Channel" mean nothing by themselves and are preceded by the name
// of their group: "depth-map-layer".
std::string optionName(const headless::ParameterInfo& info);

// What a control accepts, for help texts: "a number from 0.0 to 500.0", "on or off",
// "normal (1) or split (2)".
std::string acceptedValues(const headless::ParameterInfo& info);
// Its default as a user would write it.
std::string defaultText(const headless::ParameterInfo& info);

// "--blur-radius" for a misspelt "--blur-raduis"; empty if none of `known` is close.
std::string nearestOption(const std::string& unknown, const std::vector<std::string>& known);

// The choice of a popup or the state of a checkbox in the frame at `time`.
int choiceAt(const headless::ParameterSet& parameters, const char* label, A_Time time);

// A value as given on the command line.
struct Setting {
    headless::ParameterInfo info;
    std::string text;
};

// Sets a control that isn't a layer, from a value or from keys (see shot/Keys.h). A choice may be
// shortened to any unique beginning. Throws UsageError, naming the option and what it accepts.
void applySetting(headless::ParameterSet& parameters, const Setting& setting);

// The options of one subcommand. Layers are files, which the caller reads.
class ParameterOptions {
public:
    explicit ParameterOptions(std::vector<headless::ParameterInfo> controls);

    // Adds an option for each control that has a value. This object must outlive the app.
    void addTo(CLI::App& app);
    // The settings given, in the order of the controls.
    std::vector<Setting> settings() const;
    // The setting with this option name, if it was given.
    std::optional<Setting> setting(const std::string& option) const;
    bool given(const std::string& option) const { return setting(option).has_value(); }
    bool empty() const { return options_.empty(); }

private:
    struct Declared {
        headless::ParameterInfo info;
        std::string text;
        CLI::Option* option = nullptr;
    };
    std::deque<Declared> options_;  // options point into it
};

}  // namespace cli
