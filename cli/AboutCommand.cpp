#include "cli/AboutCommand.h"

#include <ostream>

#include "cli/EffectSession.h"
#include "cli/Errors.h"

namespace cli {

AboutCommand::AboutCommand(CLI::App& parent, const Invocation& invocation)
    : invocation_(invocation) {
    app_ = parent.add_subcommand("about", "Print what the effect says about itself");
    app_->allow_extras();
    app_->add_option("--bundle", bundle_, "file that holds the effect")->type_name("FILE");
}

int AboutCommand::run() {
    const auto bundle = requireBundle(bundle_, invocation_.programFolder);
    EffectSession session(bundle);
    std::string text = session.effect().about();
    for (char& c : text) {
        if (c == '\r') c = '\n';  // the interface's line end
    }
    invocation_.out << text << (text.ends_with('\n') ? "" : "\n") << "Loaded from "
                    << bundle.string() << '\n';
    return kExitSuccess;
}

}  // namespace cli
