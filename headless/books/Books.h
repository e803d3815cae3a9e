// SPDX-License-Identifier: Apache-2.0
#pragma once
// Counts of all things lent to the effect, and faults.

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "headless/Accounts.h"

namespace headless {

// Counts things without memory of their own. All functions may be called from any thread.
class Books {
public:
    void lend(const std::string& kind, const std::string& name);
    // False, and a fault, if none of it is lent.
    bool takeBack(const std::string& kind, const std::string& name);
    // Records misuse of the interface.
    void fault(std::string text);
    void clearFaults();
    // Adds all entries to `accounts`.
    void report(Accounts& accounts) const;

private:
    mutable std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, int> lent_;
    std::vector<std::string> faults_;
};

}  // namespace headless
