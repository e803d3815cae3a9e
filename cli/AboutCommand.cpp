#include "cli/AboutCommand.h"

#include <ostream>

#include "cli/EffectSession.h"
#include "cli/Errors.h"

namespace cli {

AboutCommand::AboutCommand(CLI::App& parent, const Invocation& invocation)
    : m_invocation(invocation) {
    m_app = parent.add_subcommand("about", "Print what the effect says about itself");
    m_app->allow_extras();
    m_app->add_option("--bundle", m_bundle, "file that holds the effect")->type_name("FILE");
}

int AboutCommand::run() {
    const auto bundle = requireBundle(m_bundle, m_invocation.programFolder);
    EffectSession session(bundle);
    std::string text = session.effect().about();
    for (char& c : text) {
        if (c == '\r') c = '\n';  // the interface's line end
    }
    m_invocation.out << text << (text.ends_with('\n') ? "" : "\n") << "Loaded from "
                     << bundle.string() << '\n';
    return kExitSuccess;
}

}  // namespace cli
