#include "headless/books/Books.h"

namespace headless {

void Books::lend(const std::string& kind, const std::string& name) {
    const std::lock_guard lock(mutex);
    ++lent[{kind, name}];
}

bool Books::takeBack(const std::string& kind, const std::string& name) {
    const std::lock_guard lock(mutex);
    const auto entry = lent.find({kind, name});
    if (entry == lent.end()) {
        faults.push_back(kind + " \"" + name + "\" given back, though it was not out");
        return false;
    }
    if (--entry->second == 0) lent.erase(entry);
    return true;
}

void Books::fault(std::string text) {
    const std::lock_guard lock(mutex);
    faults.push_back(std::move(text));
}

void Books::clearFaults() {
    const std::lock_guard lock(mutex);
    faults.clear();
}

void Books::report(Accounts& accounts) const {
    const std::lock_guard lock(mutex);
    for (const auto& [key, count] : lent) {
        accounts.outstanding.push_back({key.first, key.second, count, 0, 0});
    }
    accounts.faults.insert(accounts.faults.end(), faults.begin(), faults.end());
}

}  // namespace headless
