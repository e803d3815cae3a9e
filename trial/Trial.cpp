// SPDX-License-Identifier: Apache-2.0
#include "trial/Trial.h"

namespace trial {

namespace {

// Two workers on every machine, so that items run side by side.
headless::HostOptions hostOptions() {
    headless::HostOptions options;
    options.threads = 2;
    return options;
}

}  // namespace

Trial::Trial(const Settings& trialSettings, std::ostream& out)
    : chosen_(trialSettings), cases_(out), host_(hostOptions()) {}

void Trial::run(const std::string& name, const std::function<void()>& body) {
    cases_.run(name, [&] {
        try {
            body();
        } catch (const std::exception& error) {
            check(false, error.what());
        }
        const std::string books = host_.accounts().describe();
        check(books == outstanding_, books);
        check(host_.memory().current == standing_, "host memory is still in use");
        // What one case left behind doesn't fail the next.
        host_.clearFaults();
        outstanding_ = host_.accounts().describe();
        takeAsStanding();
    });
}

void Trial::keep(const std::string& name, const Frame& frame) const {
    if (!chosen_.frames.empty()) writeFrame(frame, chosen_.frames / (name + kFrameSuffix));
}

}  // namespace trial
