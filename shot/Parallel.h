// SPDX-License-Identifier: Apache-2.0
#pragma once
// Several frames at a time.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace shot {

// Calls `work(index)` for 0 to count - 1 in this order, up to `jobs` at a time, each on a thread of
// its own. Begins no more after a call that returned false or threw; waits for those under way, and
// throws what the first of them threw.
void inParallel(std::size_t count, int jobs, const std::function<bool(std::size_t index)>& work);

// The memory that the system could still give to this process, in bytes: limits of its control
// group count. None if the system doesn't say.
std::optional<std::uint64_t> availableMemory();

// Lets threads share what memory they have freed, where the C library would keep some for each: the
// memory of many frames stays that of a few.
void shareFreeMemory();

}  // namespace shot
