// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "cli/options/EffectOptions.h"
#include "headless/Effect.h"
#include "pictures/Messages.h"

namespace cli {

// Warns about options of controls that the effect greys out as things are, and names what switches
// them on. Only options among `arguments` count: a preset has them all. `effect` has the values of
// the controls; which layers there are is known by the options. Main thread.
void warnAboutIdleOptions(headless::Effect& effect, const EffectOptions& options,
                          const std::vector<std::string>& arguments, pictures::Messages& messages);

}  // namespace cli
