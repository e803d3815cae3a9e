// SPDX-License-Identifier: Apache-2.0
#pragma once
// Scales each kernel of a bank to the sum 1 / (B x B), by the factors that CustomFilter computes.

#include <cstddef>

#include "host/AEO_Base.h"

// Multiplies the real parts of the bank, lane by lane, by one factor per layer; the imaginary parts
// are zero. Item i of the iteration is block position i. `Bank` is a Filter<N>.
template <class Bank>
class NormalizeFilter {
public:
    using Factors = typename Bank::Element;

    // Keeps its arguments by reference.
    NormalizeFilter(AEO::InData& context, Bank& filter, const Factors& factors)
        : context_(context), filter_(filter), factors_(factors) {}

    // Scales position `index`. Always returns 0.
    int iterate(int, int index, int) {
        typename Bank::Element& real = filter_[2 * static_cast<std::size_t>(index)];
        for (std::size_t l = 0; l < Factors::kLanes; ++l) real[l] *= factors_[l];
        return 0;
    }

private:
    [[maybe_unused]] AEO::InData& context_;
    Bank& filter_;
    const Factors& factors_;
};
