// SPDX-License-Identifier: Apache-2.0
#include "cli/help/Completion.h"

#include <algorithm>

namespace cli {
namespace {

constexpr const char* kHead = "# SPDX-License-Identifier: Apache-2.0\n# Completion of orbel ";

std::string joined(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
    return text;
}

// The names of the commands, and "help", which the parser doesn't know as one.
std::vector<std::string> commandNames(const std::vector<CommandFacts>& all) {
    std::vector<std::string> names;
    for (std::size_t i = 1; i < all.size(); ++i) names.push_back(all[i].name);
    names.emplace_back("help");
    return names;
}

// The first phrase of a help text: a list has no room for more.
std::string phrase(const std::string& help) {
    constexpr std::size_t kLongest = 70;
    std::string text = help.substr(0, help.find(';'));
    if (text.size() > kLongest) text = text.substr(0, text.find(':'));
    if (text.size() <= kLongest) return text;
    return text.substr(0, text.rfind(' ', kLongest)) + " ...";
}

// `text` with a backslash before each character of `special`.
std::string escaped(const std::string& text, const char* special) {
    std::string result;
    for (const char c : text) {
        if (std::string(special).find(c) != std::string::npos) result += '\\';
        result += c;
    }
    return result;
}

// In single quotes, of a shell in which nothing can be escaped between them.
std::string inQuotes(const std::string& text) {
    std::string result = "'";
    for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

const OptionFacts* firstArgument(const CommandFacts& command) {
    const auto found = std::find_if(command.options.begin(), command.options.end(),
                                    [](const OptionFacts& option) { return option.isArgument; });
    return found == command.options.end() ? nullptr : &*found;
}

std::vector<std::string> optionNames(const CommandFacts& command) {
    std::vector<std::string> names;
    for (const OptionFacts& option : command.options) {
        if (!option.isArgument) names.insert(names.end(), option.names.begin(), option.names.end());
    }
    return names;
}

// The branch of bash's script for the value of one option.
std::string bashValue(const OptionFacts& option) {
    std::string action = "return";
    if (option.isFile()) action = "files=yes";
    if (!option.choices.empty()) action = "words='" + joined(option.choices, " ") + "'";
    return "                " + joined(option.names, "|") + ") " + action + " ;;\n";
}

std::string bashCommand(const CommandFacts& command) {
    std::string text = "        " + command.name + ")\n            case $before in\n";
    for (const OptionFacts& option : command.options) {
        if (option.takesValue()) text += bashValue(option);
    }
    const OptionFacts* argument = firstArgument(command);
    std::string otherwise = ":";
    if (argument != nullptr) {
        otherwise =
            argument->isFile() ? "files=yes" : "words='" + joined(argument->choices, " ") + "'";
    }
    return text + "                *) if [[ $word == -* ]]; then words='" +
           joined(optionNames(command), " ") + "'; else " + otherwise +
           "; fi ;;\n            esac ;;\n";
}

// The action of zsh's _arguments for a value.
std::string zshAction(const OptionFacts& option) {
    if (option.isFile()) return "_files";
    if (option.choices.empty()) return " ";
    return "(" + joined(option.choices, " ") + ")";
}

std::string zshOption(const OptionFacts& option) {
    const std::string help = "[" + escaped(phrase(option.help), "[]\\:") + "]";
    const std::string others = "(" + joined(option.names, " ") + ")";
    std::string text;
    for (const std::string& name : option.names) {
        std::string spec = others + name;
        if (option.takesValue()) {
            spec += (name.starts_with("--") ? "=" : "+") + help + ":" +
                    escaped(option.value, "[]\\:") + ":" + zshAction(option);
        } else {
            spec += help;
        }
        text += "        " + inQuotes(spec) + " \\\n";
    }
    return text;
}

std::string zshCommand(const CommandFacts& command) {
    std::string text = "      " + command.name + ")\n        _arguments -S \\\n";
    for (const OptionFacts& option : command.options) {
        if (!option.isArgument) text += zshOption(option);
    }
    const OptionFacts* argument = firstArgument(command);
    if (argument == nullptr) return text + "        && return ;;\n";
    const std::string spec =
        (argument->isFile() ? "*:" : "1:") + argument->names.front() + ":" + zshAction(*argument);
    return text + "        " + inQuotes(spec) + " && return ;;\n";
}

// In single quotes of fish, which knows escapes there.
std::string fishQuoted(const std::string& text) {
    return "'" + escaped(text, "'\\") + "'";
}

std::string fishOption(const OptionFacts& option, const std::string& condition) {
    std::string text = "complete -c orbel -n " + condition;
    for (const std::string& name : option.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (option.takesValue()) text += option.isFile() ? " -r -F" : " -x";
    if (!option.choices.empty()) text += " -a " + fishQuoted(joined(option.choices, " "));
    return text + " -d " + fishQuoted(phrase(option.help)) + "\n";
}

std::string fishCommand(const CommandFacts& command) {
    const std::string condition = fishQuoted("__fish_seen_subcommand_from " + command.name);
    std::string text = "complete -c orbel -n __fish_use_subcommand -a " + command.name + " -d " +
                       fishQuoted(command.description) + "\n";
    for (const OptionFacts& option : command.options) {
        if (!option.isArgument) text += fishOption(option, condition);
    }
    const OptionFacts* argument = firstArgument(command);
    if (argument == nullptr) return text;
    text += "complete -c orbel -n " + condition;
    return text +
           (argument->isFile() ? " -F" : " -a " + fishQuoted(joined(argument->choices, " "))) +
           "\n";
}

}  // namespace

std::string bashCompletion(const std::vector<CommandFacts>& all) {
    std::string commands;
    for (std::size_t i = 1; i < all.size(); ++i) commands += bashCommand(all[i]);
    const std::string names = joined(commandNames(all), " ");
    // Bash makes a word of the "=" in --option=value.
    return std::string(kHead) + "in bash\n" + R"(_orbel() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} words='' files=''
    if [[ $word == = ]]; then
        word=''
    elif [[ $before == = ]] && ((COMP_CWORD > 1)); then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        words=')" +
           names + " " + joined(optionNames(all.front()), " ") + R"('
    else
        case ${COMP_WORDS[1]} in
        help) words=')" +
           names + "' ;;\n" + commands + R"(        esac
    fi
    if [[ -n $files ]]; then
        compopt -o default # of the shell itself, which knows ~ and quotes
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    fi
}
complete -F _orbel orbel
)";
}

std::string zshCompletion(const std::vector<CommandFacts>& all) {
    std::string options;
    for (const OptionFacts& option : all.front().options) options += zshOption(option);
    std::string list;
    std::string commands;
    for (std::size_t i = 1; i < all.size(); ++i) {
        list += "        " + inQuotes(all[i].name + ":" + all[i].description) + "\n";
        commands += zshCommand(all[i]);
    }
    return "#compdef orbel\n" + std::string(kHead) + "in zsh\n" + R"(_orbel() {
  local curcontext="$curcontext" state line
  local -a commands=(
)" + list + R"(        'help:Describe a command'
  )
  _arguments -C \
)" + options +
           R"(        '1: :->command' '*:: :->rest' && return
  case $state in
  command) _describe -t commands command commands ;;
  rest)
    case $words[1] in
      help) _describe -t commands command commands ;;
)" + commands +
           R"(    esac ;;
  esac
}
if [[ $funcstack[1] == _orbel ]]; then
  _orbel "$@"
else
  compdef _orbel orbel
fi
)";
}

std::string fishCompletion(const std::vector<CommandFacts>& all) {
    std::string text = std::string(kHead) + "in fish\ncomplete -c orbel -f\n";
    for (const OptionFacts& option : all.front().options) {
        text += fishOption(option, "__fish_use_subcommand");
    }
    for (std::size_t i = 1; i < all.size(); ++i) text += fishCommand(all[i]);
    text += "complete -c orbel -n __fish_use_subcommand -a help -d 'Describe a command'\n";
    return text + "complete -c orbel -n '__fish_seen_subcommand_from help' -a " +
           fishQuoted(joined(commandNames(all), " ")) + "\n";
}

}  // namespace cli
