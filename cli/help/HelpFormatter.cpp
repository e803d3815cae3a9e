// SPDX-License-Identifier: Apache-2.0
#include "cli/help/HelpFormatter.h"

#include <sstream>

#include "cli/help/CommandFacts.h"
#include "cli/help/Examples.h"

namespace cli {
namespace {

constexpr std::size_t kWidth = 100;
constexpr std::size_t kTextColumn = 34;

// The text in lines that begin at the text's column, the first of them after `name`.
std::string inColumns(std::string name, const std::string& text) {
    std::string line = std::move(name);
    std::string all;
    const auto breakLine = [&] {
        all += line + '\n';
        line.assign(kTextColumn, ' ');
    };
    if (line.size() + 2 > kTextColumn) breakLine();
    line.resize(kTextColumn, ' ');
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const bool first = line.size() == kTextColumn;
        if (!first && line.size() + 1 + word.size() > kWidth) breakLine();
        if (line.size() > kTextColumn) line += ' ';
        line += word;
    }
    return all + line + '\n';
}

}  // namespace

HelpFormatter::HelpFormatter() {
    label("Positionals", "Arguments");
    label("SUBCOMMAND", "COMMAND");
    column_width(kTextColumn);
}

std::string HelpFormatter::make_option(const CLI::Option* option, bool /*positional*/) const {
    const OptionFacts facts = factsOf(*option);
    std::string name = "  ";
    for (const std::string& each : facts.names) name += (name.size() > 2 ? ", " : "") + each;
    if (!facts.isArgument && !facts.value.empty()) name += " " + facts.value;
    return inColumns(name, facts.help + (facts.required ? " (required)" : ""));
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    std::string text;
    for (const Example& example : examplesOf(app->get_name())) {
        text += std::string("  # ") + example.purpose + "\n  " + example.command + '\n';
    }
    if (!text.empty()) text = "Examples:\n" + text + '\n';
    return text + CLI::Formatter::make_footer(app);
}

}  // namespace cli
