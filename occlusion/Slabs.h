// SPDX-License-Identifier: Apache-2.0
#pragma once
// Slabs: the ranges of depth that are blurred one by one, from far to near.

#include <cstddef>
#include <vector>

namespace occlusion {

// Slab 0 is the farthest. Membership is soft around a bound, so that a surface that passes through
// it has no seam, and adds up to 1 over all slabs.
class Slabs {
public:
    // `bounds` are values of nearness between 0 and 1, in ascending order, each once.
    explicit Slabs(std::vector<float> bounds);

    std::size_t count() const { return bounds_.size() + 1; }
    const std::vector<float>& bounds() const { return bounds_; }

    // How much of a depth belongs to slabs nearer than `slab`, and how much to it.
    float nearer(std::size_t slab, float nearness) const;
    float share(std::size_t slab, float nearness) const;

private:
    std::vector<float> bounds_;
    std::vector<float> halfWidths_;  // of the ranges around the bounds; they don't overlap
};

}  // namespace occlusion
