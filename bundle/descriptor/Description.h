// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the host reads about a plug-in before it loads it.

#include <cstdint>
#include <iosfwd>
#include <stdexcept>
#include <string>

namespace descriptor {

// A description that can't be written; the message names the field and what is wrong.
class DescriptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct Description {
    std::string name;        // shown in the effects menu, at most 47 bytes
    std::string category;    // the menu's group
    std::string matchName;   // stored in projects: unique, never changed
    std::string entryPoint;  // the exported function
    std::uint16_t interfaceMajor = 0;
    std::uint16_t interfaceMinor = 0;
    std::uint32_t effectVersion = 0;  // as the effect reports it at set-up
    std::uint32_t outFlags = 0;
    std::uint32_t outFlags2 = 0;
};

// The longest texts: a display name, and what fits after one length byte.
inline constexpr std::size_t kMaxDisplayName = 47;
inline constexpr std::size_t kMaxText = 255;

// Orbel's own, from the constants that the code reports to the host.
Description orbelDescription();

// Throws DescriptionError for an empty or too long text.
void check(const Description& description);

// Reads lines of `key = value`; empty lines and lines that begin with # are ignored. The keys are
// name, category, match_name, entry_point, interface_version (as 13.28), effect_version, out_flags
// and out_flags2 (decimal or 0x...), each exactly once. Checks the result. Throws DescriptionError.
Description read(std::istream& text);

}  // namespace descriptor
