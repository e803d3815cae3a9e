// SPDX-License-Identifier: Apache-2.0
#include "headless/books/Books.h"

namespace headless {

void Books::lend(const std::string& kind, const std::string& name) {
    const std::lock_guard lock(mutex_);
    ++lent_[{kind, name}];
}

bool Books::takeBack(const std::string& kind, const std::string& name) {
    const std::lock_guard lock(mutex_);
    const auto entry = lent_.find({kind, name});
    if (entry == lent_.end()) {
        faults_.push_back(kind + " \"" + name + "\" returned, but not lent");
        return false;
    }
    if (--entry->second == 0) lent_.erase(entry);
    return true;
}

void Books::fault(std::string text) {
    const std::lock_guard lock(mutex_);
    faults_.push_back(std::move(text));
}

void Books::clearFaults() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
}

void Books::report(Accounts& accounts) const {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, count] : lent_) {
        accounts.outstanding.push_back({key.first, key.second, count, 0, 0});
    }
    accounts.faults.insert(accounts.faults.end(), faults_.begin(), faults_.end());
}

}  // namespace headless
