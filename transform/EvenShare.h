// SPDX-License-Identifier: Apache-2.0
#pragma once
// Which item of an iteration does which piece of a pass.

#include <bit>
#include <cstddef>
#include <cstdint>

// Spreads `units` pieces of work evenly over an iteration's items, whose number is a power of two.
// A host cuts an iteration into contiguous shares, so items that work lie at even distances; the
// others return at once.
class EvenShare {
public:
    EvenShare(std::size_t units, std::size_t items)
        : units_(units), shift_(static_cast<unsigned>(std::countr_zero(items))) {}

    // Calls `work(unit)` for each unit of `item`, in ascending order.
    template <class Work>
    void run(int item, Work&& work) const {
        const std::uint64_t before = static_cast<std::uint64_t>(item) * units_;
        const std::uint64_t end = (before + units_) >> shift_;
        for (std::uint64_t unit = before >> shift_; unit < end; ++unit) {
            work(static_cast<std::size_t>(unit));
        }
    }

private:
    std::uint64_t units_;
    unsigned shift_;
};
