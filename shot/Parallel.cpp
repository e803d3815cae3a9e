// SPDX-License-Identifier: Apache-2.0
#include "shot/Parallel.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#elif defined(__GLIBC__)
#include <malloc.h>
#endif

namespace shot {
namespace {

// Hands out the indices one by one.
class Queue {
public:
    explicit Queue(std::size_t count) : count_(count) {}

    // False if there is no more.
    bool next(std::size_t& index) {
        const std::lock_guard lock(mutex_);
        if (ended_ || next_ == count_) return false;
        index = next_++;
        return true;
    }
    void end(const std::exception_ptr& error) {
        const std::lock_guard lock(mutex_);
        ended_ = true;
        if (!error_) error_ = error;
    }
    void rethrow() const {
        if (error_) std::rethrow_exception(error_);
    }

private:
    std::mutex mutex_;
    const std::size_t count_;
    std::size_t next_ = 0;
    bool ended_ = false;
    std::exception_ptr error_;
};

void workOff(Queue& queue, const std::function<bool(std::size_t)>& work) {
    for (std::size_t index = 0; queue.next(index);) {
        try {
            if (!work(index)) queue.end(nullptr);
        } catch (...) {
            queue.end(std::current_exception());
        }
    }
}

#ifndef _WIN32
// The number in the line of a file that begins with `name`, or its first number.
std::optional<std::uint64_t> numberIn(const char* file, const std::string& name = {}) {
    std::ifstream lines(file);
    for (std::string word; lines >> word;) {
        if (!name.empty() && word != name) continue;
        if (!name.empty() && !(lines >> word)) break;
        if (word.find_first_not_of("0123456789") != std::string::npos) break;
        return std::stoull(word);
    }
    return std::nullopt;
}
#endif

}  // namespace

void inParallel(std::size_t count, int jobs, const std::function<bool(std::size_t index)>& work) {
    Queue queue(count);
    const std::size_t threads = std::min(count, static_cast<std::size_t>(std::max(jobs, 1)));
    {
        std::vector<std::jthread> pool;
        for (std::size_t i = 0; i < threads; ++i) {
            pool.emplace_back([&] { workOff(queue, work); });
        }
    }
    queue.rethrow();
}

std::optional<std::uint64_t> availableMemory() {
#ifdef _WIN32
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    if (GlobalMemoryStatusEx(&status) == 0) return std::nullopt;
    return status.ullAvailPhys;
#else
    std::optional<std::uint64_t> available = numberIn("/proc/meminfo", "MemAvailable:");
    if (available) *available *= 1024;
    const auto limit = numberIn("/sys/fs/cgroup/memory.max");
    const auto used = numberIn("/sys/fs/cgroup/memory.current");
    if (limit && used) {
        const std::uint64_t left = *limit - std::min(*limit, *used);
        available = std::min(available.value_or(left), left);
    }
    return available;
#endif
}

void shareFreeMemory() {
#ifdef __GLIBC__
    mallopt(M_ARENA_MAX, 2);
#endif
}

}  // namespace shot
