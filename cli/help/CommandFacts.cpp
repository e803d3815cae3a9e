// SPDX-License-Identifier: Apache-2.0
#include "cli/help/CommandFacts.h"

#include <functional>
#include <sstream>

namespace cli {
namespace {

std::vector<std::string> namesOf(const CLI::Option& option) {
    if (option.get_positional()) return {option.get_name(true, false)};
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
    return names;
}

std::vector<std::string> choicesIn(const std::string& value) {
    std::vector<std::string> choices;
    if (value.find('|') == std::string::npos) return choices;
    std::istringstream parts(value);
    for (std::string part; std::getline(parts, part, '|');) choices.push_back(part);
    return choices;
}

CommandFacts describe(const CLI::App& command) {
    CommandFacts facts{command.get_name(), command.get_description(), command.get_footer(), {}};
    const auto add = [&](const std::function<bool(const CLI::Option*)>& wanted) {
        for (const CLI::Option* option : command.get_options(wanted)) {
            facts.options.push_back(factsOf(*option));
        }
    };
    add([](const CLI::Option* option) { return option->get_positional(); });
    for (const std::string& group : command.get_groups()) {
        if (group.empty()) continue;
        add([&](const CLI::Option* option) {
            return !option->get_positional() && option->get_group() == group;
        });
    }
    return facts;
}

}  // namespace

bool OptionFacts::isFile() const {
    if (isArgument) return choices.empty();
    return value.starts_with("FILE") || value == "IMAGE";
}

OptionFacts factsOf(const CLI::Option& option) {
    OptionFacts facts;
    facts.names = namesOf(option);
    if (option.get_items_expected_max() > 0) facts.value = option.get_type_name();
    facts.help = option.get_description();
    facts.group = option.get_group();
    facts.choices = choicesIn(facts.value);
    facts.isArgument = option.get_positional();
    facts.required = option.get_required();
    return facts;
}

std::vector<CommandFacts> describeCommands(const CLI::App& tool) {
    std::vector<CommandFacts> commands = {describe(tool)};
    for (const CLI::App* command : tool.get_subcommands({})) {
        if (!command->get_group().empty()) commands.push_back(describe(*command));
    }
    return commands;
}

}  // namespace cli
