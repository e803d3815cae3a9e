// SPDX-License-Identifier: Apache-2.0
#include "cli/options/ColourOptions.h"

#include <cstdlib>

#include "cli/Errors.h"

namespace cli {
namespace {

pictures::ColourConfig configOfEnvironment(pictures::Messages& messages) {
    const char* file = std::getenv("OCIO");
    if (file == nullptr || *file == '\0') return {};
    try {
        return pictures::ColourConfig(file);
    } catch (const Failure& failure) {
        messages.warn(failure.what());
        return {};
    }
}

void requireKnown(const char* option, const std::string& name,
                  const pictures::ColourConfig& config) {
    if (name.empty() || config.knows(name)) return;
    throw UsageError(std::string(option) + " takes the name of a colour space, not \"" + name +
                     "\"; known are " + config.knownNames());
}

}  // namespace

void ColourOptions::addTo(CLI::App& app) {
    const std::string group = "Colour";
    const auto add = [&](const char* names, std::string& value, const char* help,
                         const char* placeholder) {
        app.add_option(names, value, help)->type_name(placeholder)->group(group);
    };
    add("--colour-in,--color-in", wishes_.in,
        "colour space of the input, such as sRGB, linear or Gamma2.2; default: what the file says",
        "NAME");
    add("--colour-out,--color-out", wishes_.out,
        "colour space to write; default: that of the format, linear or sRGB", "NAME");
    add("--ocio", ocio_, "OpenColorIO configuration with more colour spaces; default: $OCIO",
        "FILE");
    app.add_flag("--linear", wishes_.linear,
                 "render in linear light: decode before the blur, encode after it")
        ->group(group);
    app.add_flag("--raw", wishes_.raw, "keep the numbers as they are, without any conversion")
        ->group(group);
}

pictures::ColourConfig ColourOptions::config(pictures::Messages& messages) const {
    if (wishes_.raw && (wishes_.linear || !wishes_.out.empty())) {
        throw UsageError("--raw keeps the numbers; leave out " +
                         std::string(wishes_.linear ? "--linear" : "--colour-out"));
    }
    if (wishes_.raw && wishes_.in.empty()) return {};
    pictures::ColourConfig config =
        ocio_.empty() ? configOfEnvironment(messages) : pictures::ColourConfig(ocio_);
    requireKnown("--colour-in", wishes_.in, config);
    requireKnown("--colour-out", wishes_.out, config);
    return config;
}

}  // namespace cli
