// SPDX-License-Identifier: Apache-2.0
#pragma once
// Work on the rows of a picture, shared among threads.

#include <algorithm>
#include <thread>
#include <vector>

namespace occlusion {

// Calls `work(first, last)` for ranges of rows that together are 0 to `count` - 1, on up to
// `threads` threads, and returns when all are done. `work` must not throw.
template <class Work>
void forRows(int count, int threads, const Work& work) {
    const int parts = std::clamp(threads, 1, std::max(count, 1));
    std::vector<std::jthread> others;
    for (int part = 1; part < parts; ++part) {
        others.emplace_back([&work, first = count * part / parts,
                             last = count * (part + 1) / parts] { work(first, last); });
    }
    work(0, count / parts);
}

}  // namespace occlusion
