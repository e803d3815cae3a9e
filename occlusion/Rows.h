// SPDX-License-Identifier: Apache-2.0
#pragma once
// Work on the rows of a picture, shared among threads.

#include <algorithm>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

namespace occlusion {

// Calls `work(first, last)` for ranges of rows that together are 0 to `count` - 1, on up to
// `threads` threads, and returns when all are done. Throws what one of them threw.
template <class Work>
void forRows(int count, int threads, const Work& work) {
    const int parts = std::clamp(threads, 1, std::max(count, 1));
    std::vector<std::exception_ptr> errors(static_cast<std::size_t>(parts));
    const auto run = [&](int part) noexcept {
        try {
            work(count * part / parts, count * (part + 1) / parts);
        } catch (...) {
            errors[static_cast<std::size_t>(part)] = std::current_exception();
        }
    };
    {
        std::vector<std::jthread> others;
        for (int part = 1; part < parts; ++part) others.emplace_back(run, part);
        run(0);
    }
    for (const std::exception_ptr& error : errors) {
        if (error) std::rethrow_exception(error);
    }
}

}  // namespace occlusion
