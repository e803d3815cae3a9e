// SPDX-License-Identifier: Apache-2.0
#pragma once
// Lanes of a block's elements, cut into groups that a pass works on one after the other, so that a
// group without light can be left out.

#include <cstddef>
#include <cstdint>

// A row's share of so many lanes fits into the first-level cache where the whole row doesn't.
constexpr std::size_t kGroupLanes = 20;

// A set of groups, group g being bit g.
using LaneGroups = std::uint32_t;

constexpr LaneGroups groupBit(std::size_t group) {
    return LaneGroups{1} << group;
}
constexpr LaneGroups allGroups(std::size_t count) {
    return groupBit(count) - 1;
}
constexpr bool contains(LaneGroups groups, std::size_t group) {
    return (groups & groupBit(group)) != 0;
}
