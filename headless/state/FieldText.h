// SPDX-License-Identifier: Apache-2.0
#pragma once
// Text fields of fixed size, as the interface's records hold them.

#include <algorithm>
#include <string>

namespace headless {

// The text up to its terminator, or the whole field if there is none.
template <std::size_t Size>
std::string fieldText(const char (&field)[Size]) {
    return std::string(field, std::find(field, field + Size, '\0'));
}

}  // namespace headless
