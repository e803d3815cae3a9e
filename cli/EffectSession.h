// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "headless/Effect.h"
#include "headless/Host.h"

namespace cli {

// The bundle to load. Throws Failure, naming the places searched, if there is none.
std::filesystem::path requireBundle(const std::string& named,
                                    const std::filesystem::path& programFolder);

// A host with the effect set up in it. Only one can exist at a time.
class EffectSession {
public:
    // Throws Failure if the bundle can't be loaded or set up.
    explicit EffectSession(const std::filesystem::path& bundle,
                           const headless::HostOptions& options = {});

    headless::Host& host() { return host_; }
    headless::Effect& effect() { return *effect_; }

private:
    headless::Host host_;
    std::unique_ptr<headless::Effect> effect_;
};

}  // namespace cli
