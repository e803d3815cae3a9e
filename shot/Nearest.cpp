// SPDX-License-Identifier: Apache-2.0
#include "shot/Nearest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace shot {
namespace {

// The number of insertions, deletions and replacements that turn one text into the other.
std::size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

std::string nearestName(const std::string& unknown, const std::vector<std::string>& known) {
    constexpr std::size_t kLongest = 100;  // no name is longer, and the time grows with the length
    if (unknown.size() > kLongest) return {};
    std::string nearest;
    std::size_t best = std::max<std::size_t>(3, unknown.size() / 3);
    for (const std::string& candidate : known) {
        const std::size_t distance = editDistance(unknown, candidate);
        // Where every letter differs, nothing is near.
        if (distance >= std::min({best, unknown.size(), candidate.size()})) continue;
        best = distance;
        nearest = candidate;
    }
    return nearest;
}

std::string suggestion(const std::string& unknown, const std::vector<std::string>& known) {
    const std::string nearest = nearestName(unknown, known);
    return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

}  // namespace shot
