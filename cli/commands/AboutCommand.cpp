// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/AboutCommand.h"

#include <ostream>

#include "cli/EffectSession.h"
#include "cli/Errors.h"

namespace cli {

AboutCommand::AboutCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("about", "Print the effect's version and description");
    app_->allow_extras();
    app_->add_option("--bundle", bundle_, "effect bundle to load")->type_name("FILE");
}

int AboutCommand::run() {
    const auto bundle = requireBundle(bundle_, invocation_.programFolder);
    EffectSession session(bundle);
    std::string text = session.effect().about();
    for (char& c : text) {
        if (c == '\r') c = '\n';  // the interface's line break
    }
    invocation_.out << text << (text.ends_with('\n') ? "" : "\n") << "Loaded from "
                    << bundle.string() << '\n';
    return kExitSuccess;
}

}  // namespace cli
