#pragma once
// Who has what: counts of all things lent to the effect, faults, and the log of calls.

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "headless/Accounts.h"

namespace headless {

// Things that are counted but carry no memory. All functions may be called from any thread.
class Books {
public:
    void lend(const std::string& kind, const std::string& name);
    // False, and a fault, if none of it is out.
    bool takeBack(const std::string& kind, const std::string& name);
    // Records misuse of the interface.
    void fault(std::string text);
    void clearFaults();
    // Adds all entries to `accounts`.
    void report(Accounts& accounts) const;

private:
    mutable std::mutex mutex;
    std::map<std::pair<std::string, std::string>, int> lent;
    std::vector<std::string> faults;
};

// The sequence of calls, for tests of order.
class CallLog {
public:
    bool records() const { return recording.load(std::memory_order_relaxed); }
    void start();
    std::vector<std::string> take();

    // Adds "name" and the arguments, parted by blanks, if the log records.
    template <class... Arguments>
    void add(const char* name, const Arguments&... arguments) {
        if (!records()) return;
        std::string text = name;
        ((text += ' ', text += toText(arguments)), ...);
        append(std::move(text));
    }

private:
    static std::string toText(const char* text) { return text ? text : "(null)"; }
    static std::string toText(const std::string& text) { return text; }
    template <class Number>
    static std::string toText(Number number) {
        return std::to_string(number);
    }
    void append(std::string text);

    std::atomic<bool> recording{false};
    std::mutex mutex;
    std::vector<std::string> calls;
};

}  // namespace headless
