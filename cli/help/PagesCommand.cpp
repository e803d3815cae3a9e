// SPDX-License-Identifier: Apache-2.0
#include "cli/help/PagesCommand.h"

#include <filesystem>
#include <fstream>

#include "cli/Errors.h"
#include "cli/help/CommandFacts.h"
#include "cli/help/Completion.h"
#include "cli/help/ManPage.h"

namespace fs = std::filesystem;

namespace cli {
namespace {

void writeFile(const fs::path& file, const std::string& text) {
    std::ofstream stream(file, std::ios::binary);
    stream << text;
    if (!stream.flush()) throw Failure("cannot write " + file.string());
}

}  // namespace

PagesCommand::PagesCommand(CLI::App& parent) : tool_(parent) {
    app_ = parent.add_subcommand("pages", "Write man pages and completion scripts");
    app_->group("");
    app_->allow_extras();
    app_->add_option("FOLDER", folder_, "folder to write them to")->required();
    app_->add_option("--bundle", "effect bundle to load")->type_name("FILE");
}

int PagesCommand::run() {
    const std::vector<CommandFacts> all = describeCommands(tool_);
    const fs::path folder = folder_;
    std::error_code failed;
    fs::create_directories(folder / "man1", failed);
    for (const CommandFacts& command : all) {
        writeFile(folder / "man1" / (manPageName(command) + ".1"), manPage(command, all));
    }
    writeFile(folder / "orbel.bash", bashCompletion(all));
    writeFile(folder / "_orbel", zshCompletion(all));
    writeFile(folder / "orbel.fish", fishCompletion(all));
    return kExitSuccess;
}

}  // namespace cli
