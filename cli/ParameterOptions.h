#pragma once
// Options of the command line made from the controls that the effect declares.

#include <CLI/App.hpp>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "headless/Parameters.h"

namespace cli {

// The option of a control, without the leading hyphens: the label in lower case with hyphens, such
// as "blur-radius". "Layer" and "Channel" mean nothing alone and get their group's name in front:
// "depth-map-layer".
std::string optionName(const headless::ParameterInfo& info);

// What a control takes, for help texts: "0 to 500", "on or off", "normal (1) or split (2)".
std::string acceptedValues(const headless::ParameterInfo& info);
// Its default as a user would write it.
std::string defaultText(const headless::ParameterInfo& info);

// "--blur-radius" for a misspelt "--blur-raduis"; empty if none of `known` comes near.
std::string nearestOption(const std::string& unknown, const std::vector<std::string>& known);

// A value as it stood on the command line.
struct Setting {
    headless::ParameterInfo info;
    std::string text;
};

// Sets a control that isn't a layer. Throws UsageError, naming the option and what it accepts.
void applySetting(headless::ParameterSet& parameters, const Setting& setting);

// The options of one subcommand. Layers are files, which the caller reads.
class ParameterOptions {
public:
    explicit ParameterOptions(std::vector<headless::ParameterInfo> controls);

    // Adds an option for each control that has a value. This object must outlive the app.
    void addTo(CLI::App& app);
    // What was given, in the controls' order.
    std::vector<Setting> settings() const;
    // The setting of the layer with this option name, if it was given.
    std::optional<Setting> layer(const std::string& option) const;
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
