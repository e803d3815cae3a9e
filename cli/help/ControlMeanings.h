// SPDX-License-Identifier: Apache-2.0
#pragma once
// What the effect's controls do, in a phrase each. The effect declares labels, ranges and defaults;
// it has no text that explains them.

#include <string>

#include "headless/Parameters.h"

namespace cli {

// The help text of a control's option: what it does, what it accepts with its unit, its default. A
// control that isn't known here has no first part.
std::string controlHelp(const headless::ParameterInfo& info);

// Whether there is a phrase for this control.
bool isExplained(const headless::ParameterInfo& info);

}  // namespace cli
