#include "headless/Books.h"

#include <algorithm>

namespace headless {

namespace {

std::string line(const Outstanding& item) {
    std::string text = std::to_string(item.count) + " x " + item.kind + " \"" + item.name + "\"";
    if (item.bytes > 0) text += ", " + std::to_string(item.bytes) + " bytes";
    if (item.locks > 0) text += ", " + std::to_string(item.locks) + " locks";
    return text + " not given back\n";
}

}  // namespace

bool Accounts::allGivenBackBut(const std::string& name) const {
    return std::all_of(outstanding.begin(), outstanding.end(),
                       [&](const Outstanding& item) { return item.name == name; });
}

std::string Accounts::describe() const {
    std::string text;
    for (const auto& item : outstanding) text += line(item);
    for (const auto& fault : faults) text += "fault: " + fault + "\n";
    return text;
}

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

void CallLog::start() {
    const std::lock_guard lock(mutex);
    calls.clear();
    recording = true;
}

std::vector<std::string> CallLog::take() {
    const std::lock_guard lock(mutex);
    recording = false;
    return std::exchange(calls, {});
}

void CallLog::append(std::string text) {
    const std::lock_guard lock(mutex);
    calls.push_back(std::move(text));
}

}  // namespace headless
