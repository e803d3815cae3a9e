#include "trial/Trial.h"

namespace trial {

namespace {

// Sums over the threads of an iteration round differently with another number of threads, so it is
// the same on every machine.
headless::HostOptions hostOptions() {
    headless::HostOptions options;
    options.threads = 2;
    return options;
}

}  // namespace

Trial::Trial(const Settings& trialSettings, std::ostream& out)
    : chosen(trialSettings), cases(out), theHost(hostOptions()) {}

void Trial::run(const std::string& name, const std::function<void()>& body) {
    cases.run(name, [&] {
        try {
            body();
        } catch (const std::exception& error) {
            check(false, error.what());
        }
        const std::string books = theHost.accounts().describe();
        check(books == outstanding, books);
        check(theHost.memory().current == standing, "host memory is still in use");
        // What one case left behind is not held against the next.
        theHost.clearFaults();
        outstanding = theHost.accounts().describe();
        takeAsStanding();
    });
}

void Trial::keep(const std::string& name, const Frame& frame) const {
    if (!chosen.frames.empty()) writeFrame(frame, chosen.frames / (name + kFrameSuffix));
}

}  // namespace trial
