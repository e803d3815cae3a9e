// SPDX-License-Identifier: Apache-2.0
#include "cli/EffectSession.h"

#include "cli/BundleLocator.h"
#include "cli/Errors.h"

namespace cli {

std::filesystem::path requireBundle(const std::string& named,
                                    const std::filesystem::path& programFolder) {
    if (const auto bundle = locateBundle(named, programFolder)) return *bundle;
    if (!named.empty()) throw Failure("cannot find the bundle " + named + "; check --bundle");
    std::string places;
    for (const auto& place : bundlePlaces(programFolder)) {
        places += (places.empty() ? "" : " and ") + place.string();
    }
    throw Failure("cannot find the effect (looked for " + places + "); name it with --bundle FILE");
}

EffectSession::EffectSession(const std::filesystem::path& bundle,
                             const headless::HostOptions& options)
    : host_(options) {
    try {
        effect_ = std::make_unique<headless::Effect>(host_, bundle);
        effect_->setUp();
    } catch (const headless::BundleError& error) {
        throw Failure(error.what());
    } catch (const headless::EffectError& error) {
        throw Failure(bundle.string() + " can't be set up: " + error.what());
    }
}

}  // namespace cli
