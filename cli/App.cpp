// SPDX-License-Identifier: Apache-2.0
#include "cli/App.h"

#include <CLI/Config.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <ostream>

#include "cli/BundleLocator.h"
#include "cli/EffectSession.h"
#include "cli/Errors.h"
#include "cli/commands/AboutCommand.h"
#include "cli/commands/ApertureCommand.h"
#include "cli/commands/CheckCommand.h"
#include "cli/commands/CompareCommand.h"
#include "cli/commands/InspectCommand.h"
#include "cli/commands/ParamsCommand.h"
#include "cli/commands/RenderCommand.h"
#include "cli/commands/SceneCommand.h"
#include "cli/doctor/DoctorCommand.h"
#include "cli/help/HelpFormatter.h"
#include "cli/help/PagesCommand.h"
#include "cli/options/OcclusionOptions.h"
#include "cli/options/ParameterOptions.h"
#include "pictures/Messages.h"
#include "pictures/Text.h"
#include "shot/Nearest.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

// The effect's controls, or why they aren't known.
struct Controls {
    headless::ParameterSet parameters;
    std::optional<Failure> failure;
};

Controls declaredControls(const Invocation& invocation) {
    try {
        EffectSession session(
            requireBundle(bundleArgument(invocation.arguments), invocation.programFolder));
        return {session.effect().parameters(), std::nullopt};
    } catch (const Failure& failure) {
        return {{}, failure};
    }
}

bool isCommand(const Invocation& invocation, const std::string& name) {
    return !invocation.arguments.empty() && invocation.arguments.front() == name;
}

bool needsControls(const Invocation& invocation) {
    return isCommand(invocation, "render") || isCommand(invocation, "inspect") ||
           isCommand(invocation, "params") || isCommand(invocation, "pages");
}

// The exit code of a Failure. For `compare` 1 means that the images differ.
int failureCode(const Invocation& invocation) {
    return isCommand(invocation, "compare") ? kExitNotCompared : kExitFailure;
}

// What the help of the tool and of most commands ends with.
std::string helpFooter(const Controls& controls) {
    std::string codes =
        "orbel help COMMAND describes a command; -- ends the options\n"
        "Exit codes: 0 done, 1 failed, 2 wrong usage, 130 interrupted; of compare: 0 equal, "
        "1 different, 2 could not compare";
    if (!controls.failure) return codes;
    return codes + "\nThe options of the effect can't be listed: " + controls.failure->what();
}

// All subcommands, in the order of the help text.
std::vector<std::unique_ptr<Command>> makeCommands(CLI::App& app, const Invocation& invocation,
                                                   const Controls& controls) {
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<RenderCommand>(app, invocation, controls.parameters));
    commands.push_back(std::make_unique<InspectCommand>(app, invocation, controls.parameters));
    commands.push_back(std::make_unique<ParamsCommand>(app, invocation, controls.parameters));
    commands.push_back(std::make_unique<ApertureCommand>(app, invocation));
    commands.push_back(std::make_unique<SceneCommand>(app, invocation));
    commands.push_back(std::make_unique<CompareCommand>(app, invocation));
    commands.push_back(std::make_unique<CheckCommand>(app, invocation));
    commands.push_back(std::make_unique<AboutCommand>(app, invocation));
    commands.push_back(std::make_unique<DoctorCommand>(app, invocation));
    commands.push_back(std::make_unique<PagesCommand>(app));
    return commands;
}

std::vector<std::string> longOptions(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
    return names;
}

// "help COMMAND" as "COMMAND --help", and "help" as "--help".
std::vector<std::string> withoutHelpCommand(std::vector<std::string> arguments) {
    if (arguments.empty() || arguments.front() != "help") return arguments;
    arguments.erase(arguments.begin());
    if (arguments.empty() || arguments.front() == "help") return {"--help"};
    arguments.insert(arguments.begin() + 1, "--help");
    return arguments;
}

// Throws for what neither the tool nor its command accepts of the arguments: an option rather than
// another argument. `command` is empty or ends with a space. After "--" there are no options.
void refuseExtras(const CLI::App& app, const std::string& command, const Invocation& invocation) {
    std::vector<std::string> extras = app.remaining();
    std::erase(extras, "--");
    if (extras.empty()) return;
    const auto begin = invocation.arguments.begin();
    const auto end = std::find(begin, invocation.arguments.end(), "--");
    const auto option = std::find_if(extras.begin(), extras.end(), [&](const std::string& extra) {
        return extra.starts_with("-") && std::find(begin, end, extra) != end;
    });
    const std::string help = "; see orbel " + command + "--help";
    if (option == extras.end()) throw UsageError("unexpected argument " + extras.front() + help);
    const std::string nearest = nearestOption(*option, longOptions(app));
    throw UsageError("unknown option " + *option +
                     (nearest.empty() ? "" : "; did you mean " + nearest + "?") + help);
}

// The parser takes one argument too many after "--" for an option. Throws if that is how `flags`
// got in.
void requireBeforeHyphens(const Invocation& invocation, const std::vector<std::string>& flags) {
    const auto begin = invocation.arguments.begin();
    const auto end = std::find(begin, invocation.arguments.end(), "--");
    if (std::find_first_of(begin, end, flags.begin(), flags.end()) != end) return;
    const auto last = invocation.arguments.end();
    const auto extra = std::find_first_of(end, last, flags.begin(), flags.end());
    if (extra != last) throw UsageError("unexpected argument " + *extra + "; see orbel --help");
}

[[noreturn]] void refuseMissingCommand(const Invocation& invocation,
                                       const std::vector<std::unique_ptr<Command>>& commands) {
    if (invocation.arguments.empty()) throw UsageError("no command given; see orbel --help");
    std::vector<std::string> names;
    names.reserve(commands.size());
    for (const auto& command : commands) names.push_back(command->app().get_name());
    const std::string& given = invocation.arguments.front();
    const std::string nearest = nearestOption(given, names);
    throw UsageError("unknown command " + given +
                     (nearest.empty() ? "" : "; did you mean " + nearest + "?") +
                     "; see orbel --help");
}

bool namesUnknownCommand(const CLI::App& app, const Invocation& invocation) {
    return app.get_subcommands().empty() && !invocation.arguments.front().starts_with("-");
}

void parse(CLI::App& app, const Invocation& invocation) {
    std::vector<std::string> reversed(invocation.arguments.rbegin(), invocation.arguments.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::Success&) {
        throw;  // a request for help or the version
    } catch (const CLI::ParseError& error) {
        const auto parsed = app.get_subcommands();
        const std::string command = parsed.empty() ? "" : parsed.front()->get_name() + " ";
        throw UsageError(pictures::oneLine(error.what()) + "; see orbel " + command + "--help");
    }
}

std::string withoutDigits(std::string text) {
    std::erase_if(text, [](char c) { return c >= '0' && c <= '9'; });
    return text;
}

// "; did you mean ...?" if the folder of a file that isn't there has one with nearly its name. One
// that differs in digits is another frame or version, and no misspelling.
std::string nearFile(const fs::path& missing) {
    constexpr std::size_t kMostNames = 10'000;  // of a folder, so that a large one takes no time
    const std::string wanted = missing.filename().string();
    const fs::path folder = missing.parent_path();
    std::vector<std::string> names;
    std::error_code failed;
    fs::directory_iterator entries(folder.empty() ? "." : folder, failed);
    for (; !failed && entries != fs::directory_iterator() && names.size() < kMostNames;
         entries.increment(failed)) {
        const std::string name = entries->path().filename().string();
        if (withoutDigits(name) != withoutDigits(wanted)) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    const std::string nearest = shot::nearestName(wanted, names);
    return nearest.empty() ? "" : "; did you mean " + (folder / nearest).string() + "?";
}

int runCommand(const Invocation& invocation) {
    const Controls controls = needsControls(invocation) ? declaredControls(invocation) : Controls{};

    CLI::App app("Custom lens blur for images", "orbel");
    app.set_version_flag("--version", "orbel " ORBEL_VERSION, "print the version");
    app.set_help_flag("-h,--help", "print this help");
    app.allow_extras();
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(helpFooter(controls));
    const auto commands = makeCommands(app, invocation, controls);

    try {
        parse(app, invocation);
    } catch (const CLI::Success& request) {
        requireBeforeHyphens(invocation, {"-h", "--help", "--version"});
        if (namesUnknownCommand(app, invocation)) refuseMissingCommand(invocation, commands);
        return app.exit(request, invocation.out, invocation.err);
    }
    for (const auto& command : commands) {
        if (!command->app().parsed()) continue;
        if (controls.failure) throw Failure(*controls.failure);
        refuseExtras(app, "", invocation);
        refuseExtras(command->app(), command->app().get_name() + " ", invocation);
        return command->run();
    }
    refuseMissingCommand(invocation, commands);
}

}  // namespace

int runTool(const Invocation& given) {
    Invocation invocation = given;
    invocation.arguments = withSlabs(withoutHelpCommand(given.arguments));
    const auto say = [&](const std::string& text) {
        invocation.err << "orbel: " << pictures::oneLine(text) << std::endl;
    };
    try {
        const int code = runCommand(invocation);
        if (invocation.out.flush()) return code;
        say("cannot write to standard output; is the disk full?");
    } catch (const UsageError& error) {
        say(error.what());
        return kExitUsage;
    } catch (const Interrupted&) {
        say("cancelled");
        return kExitInterrupted;
    } catch (const pictures::MissingFile& error) {
        say(error.what() + nearFile(error.file));
    } catch (const std::bad_alloc&) {
        say("out of memory; try --downsample 1/2 or a smaller image");
    } catch (const std::exception& error) {
        say(error.what());
    }
    return failureCode(invocation);
}

}  // namespace cli
