// SPDX-License-Identifier: Apache-2.0
// orbel-trial: tests a bundle in the host that is part of the program.

#include <charconv>
#include <iostream>
#include <optional>
#include <span>
#include <string_view>

#include "trial/Cases.h"
#include "trial/Compare.h"

namespace {

constexpr const char* kUsage =
    "orbel-trial BUNDLE [--frames DIR] [--small] [--layers N,N...]\n"
    "    Loads the bundle, sends it every command, renders synthetic images, cancels frames, "
    "limits\n"
    "    the memory, and checks that everything is returned. --frames saves the rendered frames "
    "in\n"
    "    DIR, --small renders fewer and smaller ones, and --layers lists the numbers of depth "
    "layers\n"
    "    that the bundle supports.\n"
    "orbel-trial --compare DIR DIR\n"
    "    Compares the frames of two bundles.\n"
    "The exit code is 0 if everything passes, 1 if not, 2 for a wrong command line.\n";

enum ExitCode { kGood = 0, kBad = 1, kWrongUse = 2 };

// Numbers from 1 to 16, separated by commas; none for any other text.
std::optional<std::vector<int>> parseLayers(std::string_view text) {
    std::vector<int> layers;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (true) {
        int number = 0;
        const auto [next, error] = std::from_chars(at, end, number);
        if (error != std::errc() || number < 1 || number > 16) return std::nullopt;
        layers.push_back(number);
        if (next == end) return layers;
        if (*next != ',') return std::nullopt;
        at = next + 1;
    }
}

std::optional<trial::Settings> parseSettings(std::span<char*> arguments) {
    trial::Settings settings;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (argument == "--small") {
            settings.small = true;
        } else if (argument == "--frames" && hasValue) {
            settings.frames = arguments[++i];
        } else if (argument == "--layers" && hasValue) {
            const auto layers = parseLayers(arguments[++i]);
            if (!layers) return std::nullopt;
            settings.layers = *layers;
        } else if (!argument.starts_with("--") && settings.bundle.empty()) {
            settings.bundle = argument;
        } else {
            return std::nullopt;
        }
    }
    if (settings.bundle.empty()) return std::nullopt;
    return settings;
}

bool runTrial(const trial::Settings& settings) {
    if (!settings.frames.empty()) std::filesystem::create_directories(settings.frames);
    trial::Trial run(settings, std::cout);
    trial::trySetUp(run);
    trial::tryControls(run);
    trial::trySequences(run);
    trial::tryFrames(run);
    trial::tryFailures(run);
    trial::trySetDown(run);
    run.report().printSummary();
    return run.report().good();
}

int wrongUse() {
    std::cerr << kUsage;
    return kWrongUse;
}

}  // namespace

int main(int argc, char** argv) {
    const std::span<char*> arguments(argv + 1, argv + argc);
    try {
        if (argc == 4 && std::string_view(argv[1]) == "--compare") {
            return trial::compareFolders(argv[2], argv[3], std::cout) ? kGood : kBad;
        }
        const auto settings = parseSettings(arguments);
        if (!settings) return wrongUse();
        return runTrial(*settings) ? kGood : kBad;
    } catch (const std::exception& error) {
        std::cerr << "orbel-trial: " << error.what() << '\n';
        return kBad;
    }
}
