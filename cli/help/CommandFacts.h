// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the parser's declaration of the options says, for help, man pages and completion.

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace cli {

struct OptionFacts {
    // "-o" and "--output"; of an argument its name, such as "INPUT".
    std::vector<std::string> names;
    // Stands for the value, such as "FILE"; empty for a flag, in brackets if it may be left out.
    std::string value;
    std::string help;
    std::string group;
    // All values, if `value` names them with bars in between: "on|off".
    std::vector<std::string> choices;
    bool isArgument = false;
    bool required = false;

    // Whether a value has to follow.
    bool takesValue() const { return !isArgument && !value.empty() && !isOptionalValue(); }
    bool isOptionalValue() const { return value.starts_with('['); }
    // Whether the value is the name of a file: "FILE", "FILE.exr", "IMAGE", and each argument
    // without choices.
    bool isFile() const;
};

struct CommandFacts {
    std::string name;  // "orbel" for the tool itself
    std::string description;
    std::string footer;
    std::vector<OptionFacts> options;  // arguments first, then in the order of the help
};

OptionFacts factsOf(const CLI::Option& option);

// The tool itself, then its commands. Hidden commands are left out.
std::vector<CommandFacts> describeCommands(const CLI::App& tool);

}  // namespace cli
