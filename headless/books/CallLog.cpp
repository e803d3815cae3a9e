#include "headless/books/CallLog.h"

namespace headless {

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
