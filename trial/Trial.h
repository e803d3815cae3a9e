// SPDX-License-Identifier: Apache-2.0
#pragma once
// One effect in a host, driven case by case.

#include <filesystem>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "headless/Effect.h"
#include "headless/Host.h"
#include "trial/FrameFile.h"
#include "trial/Report.h"

namespace trial {

struct Settings {
    std::filesystem::path bundle;
    std::filesystem::path frames;          // folder for the rendered frames; empty: none are saved
    bool small = false;                    // fewer and smaller frames, for a quick run
    std::vector<int> layers{1, 2, 6, 16};  // numbers of depth layers to render with
};

class Trial {
public:
    // Makes the host; load() loads the bundle.
    Trial(const Settings& trialSettings, std::ostream& out);

    const Settings& settings() const { return chosen_; }
    Report& report() { return cases_; }
    headless::Host& host() { return host_; }
    headless::Effect& effect() { return *effect_; }

    // Load and unload the bundle. Loading throws headless::BundleError.
    void load() { effect_ = std::make_unique<headless::Effect>(host_, chosen_.bundle); }
    void unload() { effect_.reset(); }

    // Runs `body` as a case, which fails on an exception, then checks that the effect returned
    // everything and didn't misuse the interface.
    void run(const std::string& name, const std::function<void()>& body);
    void check(bool holds, const std::string& what) { cases_.check(holds, what); }
    // Accepts what the effect holds now, such as its global data, as held between cases.
    void takeAsStanding() { standing_ = host_.memory().current; }

    // Saves the frame under this name if frames are saved.
    void keep(const std::string& name, const Frame& frame) const;

private:
    Settings chosen_;
    Report cases_;
    headless::Host host_;
    std::unique_ptr<headless::Effect> effect_;
    std::string outstanding_;     // as the accounts describe it
    std::uint64_t standing_ = 0;  // bytes
};

}  // namespace trial
