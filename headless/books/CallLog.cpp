// SPDX-License-Identifier: Apache-2.0
#include "headless/books/CallLog.h"

namespace headless {

void CallLog::start() {
    const std::lock_guard lock(mutex_);
    calls_.clear();
    recording_ = true;
}

std::vector<std::string> CallLog::take() {
    const std::lock_guard lock(mutex_);
    recording_ = false;
    return std::exchange(calls_, {});
}

void CallLog::append(std::string text) {
    const std::lock_guard lock(mutex_);
    calls_.push_back(std::move(text));
}

}  // namespace headless
