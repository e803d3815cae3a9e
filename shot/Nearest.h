// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace shot {

// The name in `known` that a misspelt one probably means; empty if none is close.
std::string nearestName(const std::string& unknown, const std::vector<std::string>& known);

// "; did you mean ...?" with that name, or nothing.
std::string suggestion(const std::string& unknown, const std::vector<std::string>& known);

}  // namespace shot
