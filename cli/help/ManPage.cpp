// SPDX-License-Identifier: Apache-2.0
#include "cli/help/ManPage.h"

#include <cctype>
#include <sstream>

#include "cli/help/Examples.h"

namespace cli {
namespace {

constexpr const char* kTool = "orbel";
constexpr const char* kExitCodes = "Exit codes: ";

// Text as roff prints it: hyphens that can be copied, no escapes, no control characters at the
// beginning of a line.
std::string roff(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else if (c == '^') {
            escaped += "\\(ha";
        } else {
            escaped += c;
        }
    }
    return escaped.starts_with('.') || escaped.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string upper(std::string text) {
    for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}

std::string bold(const std::string& text) {
    return "\\fB" + roff(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + roff(text) + "\\fR";
}

// Another page, in one piece.
std::string reference(const CommandFacts& command) {
    return "\\%" + bold(manPageName(command)) + "(1)";
}

std::string usage(const CommandFacts& command) {
    std::string line = bold(kTool);
    if (command.name == kTool)
        return line + " " + italic("COMMAND") + " [" + italic("OPTIONS") + "]";
    line += " " + bold(command.name);
    for (const OptionFacts& option : command.options) {
        if (!option.isArgument) continue;
        const std::string name = italic(option.names.front());
        line += option.required ? " " + name : " [" + name + "]";
    }
    return line + " [" + italic("OPTIONS") + "]";
}

std::string heading(const OptionFacts& option) {
    std::string line;
    for (const std::string& name : option.names) {
        line += (line.empty() ? "" : ", ") + (option.isArgument ? italic(name) : bold(name));
    }
    if (option.isArgument || option.value.empty()) return line;
    return line + " " + italic(option.value);
}

std::string optionsText(const CommandFacts& command) {
    std::string text = ".SH OPTIONS\n";
    std::string group = "Options";
    for (const OptionFacts& option : command.options) {
        if (!option.isArgument && option.group != group) {
            group = option.group;
            text += ".SS \"" + roff(group) + "\"\n";
        }
        text += ".TP\n" + heading(option) + "\n" + roff(option.help) + "\n";
    }
    return text;
}

std::string commandsText(const std::vector<CommandFacts>& all) {
    std::string text = ".SH COMMANDS\n";
    for (const CommandFacts& command : all) {
        if (command.name == kTool) continue;
        text += ".TP\n" + bold(command.name) + "\n" + roff(command.description) + "; see " +
                reference(command) + "\n";
    }
    return text;
}

std::string examplesText(const std::string& command) {
    std::string text;
    for (const Example& example : examplesOf(command)) {
        text += ".TP\n" + roff(example.purpose) + "\n.EX\n" + roff(example.command) + "\n.EE\n";
    }
    return text.empty() ? "" : ".SH EXAMPLES\n" + text;
}

// The footer of the help as it is, with the exit codes under their own heading.
std::string footerText(const std::string& footer) {
    std::string notes;
    std::string codes;
    std::istringstream lines(footer);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(kExitCodes)) {
            codes = line.substr(std::string(kExitCodes).size());
        } else {
            notes += roff(line) + "\n";
        }
    }
    std::string text;
    if (notes.find_first_not_of('\n') != std::string::npos)
        text = ".SH NOTES\n.EX\n" + notes + ".EE\n";
    if (!codes.empty()) text += ".SH EXIT STATUS\n" + roff(codes) + "\n";
    return text;
}

std::string references(const CommandFacts& command, const std::vector<CommandFacts>& all) {
    std::string text;
    for (const CommandFacts& other : all) {
        if (other.name == command.name) continue;
        text += (text.empty() ? "" : ",\n") + reference(other);
    }
    return ".SH SEE ALSO\n" + text + "\n";
}

}  // namespace

std::string manPageName(const CommandFacts& command) {
    return command.name == kTool ? kTool : std::string(kTool) + "-" + command.name;
}

std::string manPage(const CommandFacts& command, const std::vector<CommandFacts>& all) {
    const std::string name = manPageName(command);
    // Without a date: the same sources make the same page.
    std::string page =
        ".TH " + roff(upper(name)) + " 1 \"\" \"" + kTool + " " ORBEL_VERSION "\" \"Orbel\"\n";
    page += ".SH NAME\n" + roff(name) + " \\- " + roff(command.description) + "\n";
    page += ".SH SYNOPSIS\n" + usage(command) + "\n";
    if (command.name == kTool) page += commandsText(all);
    return page + optionsText(command) + examplesText(command.name) + footerText(command.footer) +
           references(command, all);
}

}  // namespace cli
