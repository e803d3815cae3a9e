// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <CLI/App.hpp>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace cli {

// How the tool was called.
struct Invocation {
    std::vector<std::string> arguments;   // without the program's name
    std::filesystem::path programFolder;  // where the bundle is looked for
    std::ostream& out;                    // results
    std::ostream& err;                    // messages and the progress bar
    bool terminal = false;                // `err` is a terminal
    std::istream& in = std::cin;          // an image, where a file is named "-"
};

// One subcommand. Its constructor adds it to the app with its options.
class Command {
public:
    Command() = default;
    virtual ~Command() = default;
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;

    // Carries out the parsed options and returns the exit code. Throws the types of Errors.h.
    virtual int run() = 0;
    const CLI::App& app() const { return *app_; }

protected:
    CLI::App* app_ = nullptr;  // owned by the parent app
};

}  // namespace cli
