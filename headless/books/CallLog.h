// SPDX-License-Identifier: Apache-2.0
#pragma once
// The effect's calls, in order.

#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace headless {

// Records the sequence of calls, for tests.
class CallLog {
public:
    bool records() const { return recording_.load(std::memory_order_relaxed); }
    void start();
    std::vector<std::string> take();

    // Adds `name` and the arguments, separated by spaces, if the log is recording.
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

    std::atomic<bool> recording_{false};
    std::mutex mutex_;
    std::vector<std::string> calls_;
};

}  // namespace headless
